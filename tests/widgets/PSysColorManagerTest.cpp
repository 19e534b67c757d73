#include <gtest/gtest.h>

#include "TeskWin.h"
#include "widgets/ImportPatch.h"

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
    ImportPatch patch("GetSysColor", reinterpret_cast<void *>(countGetSysColor));
    ASSERT_TRUE(patch.active());

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
    ImportPatch patch("GetSysColor", reinterpret_cast<void *>(countGetSysColor));
    ASSERT_TRUE(patch.active());
    // update() before instance(): instance() still reads the platform once more.
    PSysColorManager::update();
    PSysColorManager::instance();
    EXPECT_EQ(54, platformReads);

    auto expected = [](int index) { return GColor(static_cast<unsigned long>(countGetSysColor(index))); };
    EXPECT_TRUE(PSysColorManager::getDarkShadow3D() == expected(COLOR_3DDKSHADOW));
    EXPECT_TRUE(PSysColorManager::getFace3D() == expected(COLOR_BTNFACE));
    EXPECT_TRUE(PSysColorManager::getButtonFace() == PSysColorManager::getFace3D());
    EXPECT_TRUE(PSysColorManager::getShadow3D() == expected(COLOR_BTNSHADOW));
    EXPECT_TRUE(PSysColorManager::getButtonShadow() == PSysColorManager::getShadow3D());
    EXPECT_TRUE(PSysColorManager::getHilight3D() == expected(COLOR_BTNHIGHLIGHT));
    EXPECT_TRUE(PSysColorManager::getLight3D() == expected(COLOR_3DLIGHT));
    EXPECT_TRUE(PSysColorManager::getActiveBorder() == expected(COLOR_ACTIVEBORDER));
    EXPECT_TRUE(PSysColorManager::getActiveCaption() == expected(COLOR_ACTIVECAPTION));
    EXPECT_TRUE(PSysColorManager::getAppWorkspace() == expected(COLOR_APPWORKSPACE));
    EXPECT_TRUE(PSysColorManager::getBackground() == expected(COLOR_BACKGROUND));
    EXPECT_TRUE(PSysColorManager::getButtonText() == expected(COLOR_BTNTEXT));
    EXPECT_TRUE(PSysColorManager::getCaptionText() == expected(COLOR_CAPTIONTEXT));
    EXPECT_TRUE(PSysColorManager::getGreyText() == expected(COLOR_GRAYTEXT));
    EXPECT_TRUE(PSysColorManager::getHilight() == expected(COLOR_HIGHLIGHT));
    EXPECT_TRUE(PSysColorManager::getHilightText() == expected(COLOR_HIGHLIGHTTEXT));
    EXPECT_TRUE(PSysColorManager::getInactiveBorder() == expected(COLOR_INACTIVEBORDER));
    EXPECT_TRUE(PSysColorManager::getInactiveCaption() == expected(COLOR_INACTIVECAPTION));
    EXPECT_TRUE(PSysColorManager::getInactiveCaptionText() == expected(COLOR_INACTIVECAPTIONTEXT));
    EXPECT_TRUE(PSysColorManager::getTooltipBackground() == expected(COLOR_INFOBK));
    EXPECT_TRUE(PSysColorManager::getTooltipText() == expected(COLOR_INFOTEXT));
    EXPECT_TRUE(PSysColorManager::getMenuBackground() == expected(COLOR_MENU));
    EXPECT_TRUE(PSysColorManager::getMenuText() == expected(COLOR_MENUTEXT));
    EXPECT_TRUE(PSysColorManager::getScrollBar() == expected(COLOR_SCROLLBAR));
    EXPECT_TRUE(PSysColorManager::getWindow() == expected(COLOR_WINDOW));
    EXPECT_TRUE(PSysColorManager::getWindowFrame() == expected(COLOR_WINDOWFRAME));
    EXPECT_TRUE(PSysColorManager::getWindowText() == expected(COLOR_WINDOWTEXT));
}

TEST(PSysColorManager, FollowsThePlatform)
{
    PSysColorManager::instance();
    EXPECT_TRUE(PSysColorManager::getWindow() == GColor(static_cast<unsigned long>(GetSysColor(COLOR_WINDOW))));
    EXPECT_TRUE(PSysColorManager::getMenuText() == GColor(static_cast<unsigned long>(GetSysColor(COLOR_MENUTEXT))));
}
