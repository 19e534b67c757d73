// ToolTips.cpp - a tooltip window whose tools are the frame's buttons.
#include "ToolTips.h"

namespace {
const int tipBesideTool = 0;
} // namespace

ToolTips::ToolTips() = default;

void ToolTips::attach(PWindowObject &control, PString const &text)
{
    control.setTipText(text);
    if (!tip) {
        // The tooltip reports to its parent's parent: made under a button, it reports to the frame.
        tip = new PTooltip(&control, tipBesideTool);
        PWindowObject *window = tip;
        window->create();
    }
    control.setTipWindow(tip);
    tip->attachControl(&control);
}
