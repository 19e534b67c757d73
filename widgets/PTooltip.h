// PTooltip.h - tips for windows, asked for on demand.
//
//   PTooltip  the platform's "tooltips_class32": a top-level window owned by no window, whose
//             tools are windows of the library named by their handles
//
// A window that wants a tip keeps the text itself (setTipText) and names its tooltip
// (setTipWindow); the window procedure relays its mouse messages to the tooltip and answers
// the tooltip's request for the text. The application ties the three together.
#pragma once

#include "foundation/TeskWinExport.h"
#include "windows/PWindow.h"

class TESKWIN_API PTooltip : public PWindow {
public:
    // Keeps parent for getParent but is not one of its children, so it is neither closed nor
    // resized with them. With centerTip non-zero, tips are centred under their tools.
    PTooltip(PWindowObject *parent, int centerTip);
    PTooltip(PTooltip const &other) = default;
    PTooltip &operator=(PTooltip const &other) = default;

    char *getClassName() override;
    // Always 1: the platform's result is not tested.
    int create() override;

    // Adds control as a tool that reports to the parent of this tooltip's parent; the
    // platform's result, 0 on failure.
    int attachControl(PWindowObject *control);

protected:
    int centerTip;
};
