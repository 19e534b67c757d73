#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/ImportPatch.h"

namespace {

int platformReads = 0;

DWORD WINAPI countGetSysColor(int index)
{
    ++platformReads;
    return static_cast<DWORD>(index * 0x010203);
}

} // namespace

TEST(PSysColorManager, SnapshotIsTakenOnceAtFirstInstance)
{
    ImportPatch patch("TeskWin.dll", "user32.dll", "GetSysColor", reinterpret_cast<void *>(countGetSysColor));
    ASSERT_TRUE(patch.isActive());

    // Before the first instance() every accessor gives the default colour.
    EXPECT_TRUE(PSysColorManager::getFace3D() == GColor());
    EXPECT_TRUE(PSysColorManager::getWindowText() == GColor());

    PSysColorManager *first = PSysColorManager::instance();
    EXPECT_EQ(27, platformReads);
    EXPECT_EQ(first, PSysColorManager::instance());
    EXPECT_EQ(27, platformReads);

    PSysColorManager::update();
    EXPECT_EQ(54, platformReads);
}

TEST(PSysColorManager, SlotsReadTheirPlatformIndexes)
{
    ImportPatch patch("TeskWin.dll", "user32.dll", "GetSysColor", reinterpret_cast<void *>(countGetSysColor));
    ASSERT_TRUE(patch.isActive());
    // update() before instance(): instance() still reads the platform once more.
    PSysColorManager::update();
    PSysColorManager::instance();
    EXPECT_EQ(54, platformReads);

    using Accessor = const GColor &(*)();
    const struct {
        Accessor accessor;
        int index;
    } slots[] = {
        {PSysColorManager::getDarkShadow3D, COLOR_3DDKSHADOW},
        {PSysColorManager::getFace3D, COLOR_BTNFACE},
        {PSysColorManager::getHilight3D, COLOR_BTNHIGHLIGHT},
        {PSysColorManager::getLight3D, COLOR_3DLIGHT},
        {PSysColorManager::getShadow3D, COLOR_BTNSHADOW},
        {PSysColorManager::getActiveBorder, COLOR_ACTIVEBORDER},
        {PSysColorManager::getActiveCaption, COLOR_ACTIVECAPTION},
        {PSysColorManager::getAppWorkspace, COLOR_APPWORKSPACE},
        {PSysColorManager::getBackground, COLOR_BACKGROUND},
        {PSysColorManager::getButtonFace, COLOR_BTNFACE},
        {PSysColorManager::getButtonShadow, COLOR_BTNSHADOW},
        {PSysColorManager::getButtonText, COLOR_BTNTEXT},
        {PSysColorManager::getCaptionText, COLOR_CAPTIONTEXT},
        {PSysColorManager::getGreyText, COLOR_GRAYTEXT},
        {PSysColorManager::getHilight, COLOR_HIGHLIGHT},
        {PSysColorManager::getHilightText, COLOR_HIGHLIGHTTEXT},
        {PSysColorManager::getInactiveBorder, COLOR_INACTIVEBORDER},
        {PSysColorManager::getInactiveCaption, COLOR_INACTIVECAPTION},
        {PSysColorManager::getInactiveCaptionText, COLOR_INACTIVECAPTIONTEXT},
        {PSysColorManager::getTooltipBackground, COLOR_INFOBK},
        {PSysColorManager::getTooltipText, COLOR_INFOTEXT},
        {PSysColorManager::getMenuBackground, COLOR_MENU},
        {PSysColorManager::getMenuText, COLOR_MENUTEXT},
        {PSysColorManager::getScrollBar, COLOR_SCROLLBAR},
        {PSysColorManager::getWindow, COLOR_WINDOW},
        {PSysColorManager::getWindowFrame, COLOR_WINDOWFRAME},
        {PSysColorManager::getWindowText, COLOR_WINDOWTEXT},
    };
    for (auto const &slot : slots)
        EXPECT_TRUE(slot.accessor() == GColor(static_cast<unsigned long>(slot.index * 0x010203))) << slot.index;
    // Two names, one platform index, two slots.
    EXPECT_NE(&PSysColorManager::getFace3D(), &PSysColorManager::getButtonFace());
}

TEST(PSysColorManager, FollowsThePlatform)
{
    PSysColorManager::instance();
    EXPECT_TRUE(PSysColorManager::getWindow() == GColor(static_cast<unsigned long>(GetSysColor(COLOR_WINDOW))));
    EXPECT_TRUE(PSysColorManager::getMenuText() == GColor(static_cast<unsigned long>(GetSysColor(COLOR_MENUTEXT))));
}
