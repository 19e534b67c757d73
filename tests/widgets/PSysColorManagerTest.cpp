#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "TeskWin.h"
#include "support/ImportPatch.h"

// The snapshot is process-wide and taken once, and any window binding in this program may
// take it first; the first-instance facts are therefore checked in a fresh child process.

namespace {

int platformReads = 0;

DWORD WINAPI countGetSysColor(int index)
{
    ++platformReads;
    return static_cast<DWORD>(index * 0x010203);
}

// Runs check in a fresh process with GetSysColor counted; the child prints what failed.
void inFreshProcess(std::string (*check)())
{
    EXPECT_EXIT(
        {
            ImportPatch patch("TeskWin.dll", "user32.dll", "GetSysColor", reinterpret_cast<void *>(countGetSysColor));
            std::string failure = patch.isActive() ? check() : "GetSysColor not patched";
            std::fputs(failure.c_str(), stderr);
            std::exit(failure.empty() ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace

TEST(PSysColorManagerDeathTest, SnapshotIsTakenOnceAtFirstInstance)
{
    inFreshProcess([]() -> std::string {
        if (!(PSysColorManager::getFace3D() == GColor()) || !(PSysColorManager::getWindowText() == GColor()))
            return "a slot was set before the first instance()";
        PSysColorManager *first = PSysColorManager::instance();
        if (platformReads != 27)
            return "first instance() read " + std::to_string(platformReads);
        if (PSysColorManager::instance() != first || platformReads != 27)
            return "second instance() read again or gave another object";
        PSysColorManager::update();
        return platformReads == 54 ? "" : "update() read " + std::to_string(platformReads - 27);
    });
    // update() before instance(): instance() still reads the platform once more.
    inFreshProcess([]() -> std::string {
        PSysColorManager::update();
        PSysColorManager::instance();
        return platformReads == 54 ? "" : "update()+instance() read " + std::to_string(platformReads);
    });
}

TEST(PSysColorManager, SlotsReadTheirPlatformIndexesAndFollowThePlatform)
{
    PSysColorManager::instance();
    {
        ImportPatch patch("TeskWin.dll", "user32.dll", "GetSysColor", reinterpret_cast<void *>(countGetSysColor));
        ASSERT_TRUE(patch.isActive());
        platformReads = 0;
        PSysColorManager::update();
        EXPECT_EQ(27, platformReads);

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
    // Unpatched, update() brings back the real colours (and leaves them for later cases).
    PSysColorManager::update();
    EXPECT_TRUE(PSysColorManager::getWindow() == GColor(static_cast<unsigned long>(GetSysColor(COLOR_WINDOW))));
    EXPECT_TRUE(PSysColorManager::getMenuText() == GColor(static_cast<unsigned long>(GetSysColor(COLOR_MENUTEXT))));
}
