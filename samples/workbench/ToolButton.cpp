// ToolButton.cpp - drawing and clicking a tool button.
#include "ToolButton.h"

namespace {
const GColor face(224, 224, 228);
const GColor light(255, 255, 255);
const GColor shadow(120, 120, 128);
const GColor ink(20, 20, 40);
} // namespace

ToolButton::ToolButton(PWindowObject *frame, PString const &label, unsigned short command, PAppInterface *app)
    : PWindow(frame, label, app, WS_CHILD | WS_VISIBLE), label(label), command(command)
{
    // A plain child of the frame, beside its MDI client rather than inside it.
    isMDIChild = 0;
    style = WS_CHILD | WS_VISIBLE;
    setBackground(GBrush(face));
    setId(command);
}

char *ToolButton::getClassName() { return const_cast<char *>("WorkbenchToolButton"); }

int ToolButton::paintEvent(GContext &context)
{
    const GRect area = getClientArea();
    GRect inner(area.lVal(), area.tVal(), area.rVal() - 1, area.bVal() - 1);
    context.fillRectangle(area, GBrush(face));
    if (pressed)
        context.draw3DRect(inner, shadow, light);
    else
        context.draw3DRect(inner, light, shadow);
    context.setTextColor(ink);
    context.setBackgroundMode(TransparentBackground);
    context.drawText(label, inner, TextSingleLine | TextCentre | TextMiddleLine);
    return 1;
}

int ToolButton::mouseLDownEvent(unsigned short, GPoint const &)
{
    pressed = true;
    setMouseCapture();
    repaint(0);
    return 1;
}

int ToolButton::mouseLUpEvent(unsigned short, GPoint const &position)
{
    if (!pressed)
        return 1;
    pressed = false;
    releaseMouseCapture();
    repaint(0);
    if (isIn(position))
        postCommandEvent(getParent(), command, 0);
    return 1;
}
