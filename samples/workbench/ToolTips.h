// ToolTips.h - tips for the frame's tool buttons.
//
//   ToolTips  one tip window for the buttons of a tool strip
#pragma once

#include <TeskWin.h>

class ToolTips {
public:
    explicit ToolTips(PWindowObject &strip);
    ToolTips(ToolTips const &) = delete;
    ToolTips &operator=(ToolTips const &) = delete;

    void create();
    void attach(PWindowObject &control, PString const &text);

private:
    PWindowObject &strip;
};
