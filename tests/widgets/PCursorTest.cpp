#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/ImportPatch.h"
#include "support/TestApplication.h"

namespace {

int destroyedCursors = 0;
int destroyedIcons = 0;
HANDLE lastDestroyed = nullptr;

BOOL WINAPI countDestroyCursor(HCURSOR cursor)
{
    ++destroyedCursors;
    lastDestroyed = cursor;
    return TRUE;
}

BOOL WINAPI countDestroyIcon(HICON icon)
{
    ++destroyedIcons;
    lastDestroyed = icon;
    return TRUE;
}

class PCursorTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        destroyedCursors = 0;
        destroyedIcons = 0;
        ASSERT_TRUE(cursorPatch.isActive());
        ASSERT_TRUE(iconPatch.isActive());
    }

    ImportPatch cursorPatch{"TeskWin.dll", "user32.dll", "DestroyCursor", reinterpret_cast<void *>(countDestroyCursor)};
    ImportPatch iconPatch{"TeskWin.dll", "user32.dll", "DestroyIcon", reinterpret_cast<void *>(countDestroyIcon)};
};

} // namespace

TEST_F(PCursorTest, StockCursorsAreSharedAndNeverDestroyed)
{
    {
        PCursor wait(cursorWait);
        PCursor again(cursorWait);
        PCursor arrow(cursorArrow);
        EXPECT_EQ(1, wait == again);
        EXPECT_EQ(1, wait != arrow);
        arrow = wait;
        EXPECT_EQ(1, arrow == wait);
        PIcon icon;
        PIcon copy(icon);
    }
    EXPECT_EQ(0, destroyedCursors);
    EXPECT_EQ(0, destroyedIcons);
}

TEST_F(PCursorTest, ResourceCursorIsDestroyedOnceByItsLastCopy)
{
    TestApplication app;
    HCURSOR expected = LoadCursorA(GetModuleHandleA(nullptr), "TESTCURSOR");
    ASSERT_NE(nullptr, expected);
    {
        PCursor *loaded = new PCursor(PString("TESTCURSOR"), &app);
        PCursor copy(*loaded);
        PCursor assigned(cursorArrow);
        assigned = copy;
        EXPECT_EQ(1, assigned == *loaded);
        EXPECT_EQ(1, *loaded != PCursor(cursorArrow));
        delete loaded;
        EXPECT_EQ(0, destroyedCursors);
        copy = PCursor(cursorWait);
        EXPECT_EQ(0, destroyedCursors);

        // Failed loads are owned too, but a null handle is never passed on.
        PCursor missing(PString("NOSUCHCURSOR"), &app);
        PCursor noApp(PString("TESTCURSOR"), nullptr);
        EXPECT_EQ(1, missing == noApp);
        EXPECT_EQ(1, assigned != missing);
    }
    EXPECT_EQ(1, destroyedCursors);
    EXPECT_EQ(expected, lastDestroyed);
}

TEST_F(PCursorTest, ResourceIconIsDestroyedOnceByItsLastCopy)
{
    TestApplication app;
    HICON expected = LoadIconA(GetModuleHandleA(nullptr), "TESTICON");
    ASSERT_NE(nullptr, expected);
    {
        PIcon loaded(PString("TESTICON"), &app);
        PIcon copy(loaded);
        PIcon assigned;
        assigned = copy;
        PIcon missing(PString("NOSUCHICON"), &app);
    }
    EXPECT_EQ(1, destroyedIcons);
    EXPECT_EQ(expected, lastDestroyed);
    EXPECT_EQ(0, destroyedCursors);
}
