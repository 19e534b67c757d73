// ToolTips.h - tips for the frame's tool buttons.
//
//   ToolTips  one tip window for the buttons of a tool strip, made with the first of them
#pragma once

#include <TeskWin.h>

class ToolTips {
public:
    ToolTips();
    ToolTips(ToolTips const &) = delete;
    ToolTips &operator=(ToolTips const &) = delete;

    // control is a child of the frame the tips report to.
    void attach(PWindowObject &control, PString const &text);

private:
    // A top-level window of no parent's children: it lasts as long as the program.
    PTooltip *tip = nullptr;
};
