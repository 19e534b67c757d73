// ControlHost.h - a top-level window that holds the controls of a test.
//
//   ControlHost  a white popup window that records the commands its children send it
#pragma once

#include "TeskWin.h"

#include <windows.h>

#include <vector>

class ControlHost : public PWindow {
public:
    explicit ControlHost(PAppInterface *app, int width = 320, int height = 200)
        : PWindow(nullptr, PString("host"), app, WS_VISIBLE | WS_POPUP)
    {
        setBackground(GBrush(GColor(255, 255, 255)));
        setLocation(20, 20);
        setSize(width, height);
    }
    char *getClassName() override
    {
        static char name[] = "TeskWinControlHost";
        return name;
    }
    // A control's command: the id and the handle it named.
    int notifyEvent(PNotifyEvent const &event) override
    {
        commands.push_back({event.getWParam(), reinterpret_cast<HWND>(event.getLParam())});
        return 1;
    }
    // Registers, creates and paints the host with its auto-created children.
    void make()
    {
        registerWindow();
        create();
        RedrawWindow(*this, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    }

    struct Command {
        WPARAM wParam;
        HWND from;
    };
    std::vector<Command> commands;
};
