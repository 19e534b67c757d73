#include "widgets/PSysColorManager.h"

#include <windows.h>

namespace {

// The platform index read into each slot, in slot order.
const int theSysColorIndexes[] = {
    COLOR_3DDKSHADOW,         COLOR_BTNFACE,         COLOR_BTNHIGHLIGHT,    COLOR_3DLIGHT,
    COLOR_BTNSHADOW,          COLOR_ACTIVEBORDER,    COLOR_ACTIVECAPTION,   COLOR_APPWORKSPACE,
    COLOR_BACKGROUND,         COLOR_BTNFACE,         COLOR_BTNSHADOW,       COLOR_BTNTEXT,
    COLOR_CAPTIONTEXT,        COLOR_GRAYTEXT,        COLOR_HIGHLIGHT,       COLOR_HIGHLIGHTTEXT,
    COLOR_INACTIVEBORDER,     COLOR_INACTIVECAPTION, COLOR_INACTIVECAPTIONTEXT, COLOR_INFOBK,
    COLOR_INFOTEXT,           COLOR_MENU,            COLOR_MENUTEXT,        COLOR_SCROLLBAR,
    COLOR_WINDOW,             COLOR_WINDOWFRAME,     COLOR_WINDOWTEXT,
};

} // namespace

PSysColorManager PSysColorManager::theSysColorManager;
GColor PSysColorManager::theSysColors[slotCount];
int PSysColorManager::initialized = 0;

PSysColorManager *PSysColorManager::instance()
{
    if (!initialized) {
        update();
        initialized = 1;
    }
    return &theSysColorManager;
}

void PSysColorManager::update()
{
    int slot = 0;
    for (int index : theSysColorIndexes)
        theSysColors[slot++] = GColor(static_cast<unsigned long>(GetSysColor(index)));
}

const GColor &PSysColorManager::getDarkShadow3D() { return theSysColors[0]; }
const GColor &PSysColorManager::getFace3D() { return theSysColors[1]; }
const GColor &PSysColorManager::getHilight3D() { return theSysColors[2]; }
const GColor &PSysColorManager::getLight3D() { return theSysColors[3]; }
const GColor &PSysColorManager::getShadow3D() { return theSysColors[4]; }
const GColor &PSysColorManager::getActiveBorder() { return theSysColors[5]; }
const GColor &PSysColorManager::getActiveCaption() { return theSysColors[6]; }
const GColor &PSysColorManager::getAppWorkspace() { return theSysColors[7]; }
const GColor &PSysColorManager::getBackground() { return theSysColors[8]; }
const GColor &PSysColorManager::getButtonFace() { return theSysColors[9]; }
const GColor &PSysColorManager::getButtonShadow() { return theSysColors[10]; }
const GColor &PSysColorManager::getButtonText() { return theSysColors[11]; }
const GColor &PSysColorManager::getCaptionText() { return theSysColors[12]; }
const GColor &PSysColorManager::getGreyText() { return theSysColors[13]; }
const GColor &PSysColorManager::getHilight() { return theSysColors[14]; }
const GColor &PSysColorManager::getHilightText() { return theSysColors[15]; }
const GColor &PSysColorManager::getInactiveBorder() { return theSysColors[16]; }
const GColor &PSysColorManager::getInactiveCaption() { return theSysColors[17]; }
const GColor &PSysColorManager::getInactiveCaptionText() { return theSysColors[18]; }
const GColor &PSysColorManager::getTooltipBackground() { return theSysColors[19]; }
const GColor &PSysColorManager::getTooltipText() { return theSysColors[20]; }
const GColor &PSysColorManager::getMenuBackground() { return theSysColors[21]; }
const GColor &PSysColorManager::getMenuText() { return theSysColors[22]; }
const GColor &PSysColorManager::getScrollBar() { return theSysColors[23]; }
const GColor &PSysColorManager::getWindow() { return theSysColors[24]; }
const GColor &PSysColorManager::getWindowFrame() { return theSysColors[25]; }
const GColor &PSysColorManager::getWindowText() { return theSysColors[26]; }
