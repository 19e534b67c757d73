// PSysColorManager.h - a snapshot of the system colours under the library's own names.
//
//   PSysColorManager   the process-wide snapshot, taken at the first instance()
#pragma once

#include "foundation/GColor.h"
#include "foundation/TeskWinExport.h"

class TESKWIN_API PSysColorManager {
public:
    // Takes the snapshot on the first call.
    static PSysColorManager *instance();
    // Reads every colour from the platform again.
    static void update();

    // Each gives its slot of the snapshot; before the first instance() or update(), a
    // default colour.
    static const GColor &getDarkShadow3D();
    static const GColor &getFace3D();
    static const GColor &getHilight3D();
    static const GColor &getLight3D();
    static const GColor &getShadow3D();
    static const GColor &getActiveBorder();
    static const GColor &getActiveCaption();
    static const GColor &getAppWorkspace();
    static const GColor &getBackground();
    static const GColor &getButtonFace();
    static const GColor &getButtonShadow();
    static const GColor &getButtonText();
    static const GColor &getCaptionText();
    static const GColor &getGreyText();
    static const GColor &getHilight();
    static const GColor &getHilightText();
    static const GColor &getInactiveBorder();
    static const GColor &getInactiveCaption();
    static const GColor &getInactiveCaptionText();
    static const GColor &getTooltipBackground();
    static const GColor &getTooltipText();
    static const GColor &getMenuBackground();
    static const GColor &getMenuText();
    static const GColor &getScrollBar();
    static const GColor &getWindow();
    static const GColor &getWindowFrame();
    static const GColor &getWindowText();

protected:
    PSysColorManager() = default;

private:
    enum { slotCount = 30 };

    static PSysColorManager theSysColorManager;
    // Slots 0 to 26 are in use; the rest stay default.
    static GColor theSysColors[slotCount];
    static int initialized;
};
