// ToolButton.h - a button of the frame's tool strip.
//
//   ToolButton  a small child window of the frame that draws its label and sends its command
//               to the frame when clicked
#pragma once

#include <TeskWin.h>

class ToolButton : public PWindow {
public:
    ToolButton(PWindowObject *frame, PString const &label, unsigned short command, PAppInterface *app);

    char *getClassName() override;
    int paintEvent(GContext &context) override;
    int mouseLDownEvent(unsigned short flags, GPoint const &position) override;
    int mouseLUpEvent(unsigned short flags, GPoint const &position) override;

private:
    PString label;
    unsigned short command;
    bool pressed = false;
};
