#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/ImportPatch.h"
#include "support/TestApplication.h"
#include "widgets/TestResources.h"

namespace {

// A menu bar built item by item; ids 0 stand for separators.
PMenu menuOf(std::initializer_list<unsigned short> ids)
{
    PMenu menu;
    EXPECT_EQ(1, menu.create());
    for (unsigned short id : ids) {
        if (id == 0)
            menu.addSeparator();
        else
            menu.addString(PString("item"), id);
    }
    return menu;
}

std::vector<unsigned short> idsOf(PMenu &menu)
{
    std::vector<unsigned short> ids;
    for (int i = 0; i < menu.getMenuItemCount(); ++i)
        ids.push_back(menu.getMenuItemID(i));
    return ids;
}

} // namespace

TEST(PMenu, LoadsFromResourcesAndReadsItems)
{
    TestApplication app;
    PMenu bar(PString("TESTMENU"), &app);
    ASSERT_EQ(1, bar.isValid());
    EXPECT_TRUE(bar.getName() == "TESTMENU");
    EXPECT_EQ(2, bar.getMenuItemCount());
    EXPECT_EQ(0xFFFF, bar.getMenuItemID(0));

    PMenu file = bar.getSubMenu(0);
    EXPECT_NE(bar, file);
    EXPECT_EQ((std::vector<unsigned short>{ID_FILE_OPEN, ID_FILE_SAVE, 0, ID_FILE_EXIT}), idsOf(file));
    EXPECT_EQ(1, file.isSeparator(2, 1));
    EXPECT_EQ(0, file.isSeparator(ID_FILE_OPEN, 0));
    EXPECT_EQ(1, file.isChecked(ID_FILE_SAVE, 0));
    EXPECT_EQ(0, file.isChecked(0, 1));

    PMenu edit = bar.getSubMenu(1);
    EXPECT_EQ(1, edit.isGray(ID_EDIT_CUT, 0));
    EXPECT_EQ(0, edit.isEnabled(ID_EDIT_CUT, 0));
    EXPECT_EQ(1, edit.isEnabled(1, 1));
    edit.disableItem(ID_EDIT_COPY, 0);
    EXPECT_EQ(1, edit.isDisabled(ID_EDIT_COPY, 0));
    EXPECT_EQ(0, edit.isGray(ID_EDIT_COPY, 0));
    EXPECT_EQ(0, edit.isEnabled(ID_EDIT_COPY, 0));

    // A plain item has no popup: the menu itself comes back.
    EXPECT_EQ(file, file.getSubMenu(0));
}

TEST(PMenu, WithoutApplicationIsNotValid)
{
    PMenu menu(PString("TESTMENU"), nullptr);
    EXPECT_EQ(0, menu.isValid());
    EXPECT_TRUE(menu.getName() == "TESTMENU");
    EXPECT_EQ(nullptr, static_cast<HMENU>(menu));
}

TEST(PMenu, ChecksEnablesAndChangesItems)
{
    PMenu menu = menuOf({10, 11, 12});
    menu.check(10, 0);
    menu.check(1, 1);
    EXPECT_EQ(1, menu.isChecked(10, 0));
    EXPECT_EQ(1, menu.isChecked(11, 0));
    menu.unCheck(0, 1);
    EXPECT_EQ(0, menu.isChecked(10, 0));

    menu.grayItem(12, 0);
    EXPECT_EQ(1, menu.isGray(2, 1));
    menu.enableItem(2, 1);
    EXPECT_EQ(1, menu.isEnabled(12, 0));

    EXPECT_NE(0, menu.changeString(1, PString("renamed")));
    char text[32] = {};
    GetMenuStringA(menu, 1, text, sizeof text, MF_BYPOSITION);
    EXPECT_STREQ("renamed", text);
    EXPECT_EQ(11, menu.getMenuItemID(1));

    EXPECT_NE(0, menu.addStringByPosition(0, PString("first"), 9));
    EXPECT_NE(0, menu.addString(10, PString("before ten"), 8));
    EXPECT_NE(0, menu.addSeparator(12));
    EXPECT_EQ((std::vector<unsigned short>{9, 8, 10, 11, 0, 12}), idsOf(menu));

    EXPECT_NE(0, menu.deleteItem(8, 0));
    EXPECT_NE(0, menu.removeItem(0, 1));
    EXPECT_EQ(0, menu.deleteItem(77, 0));
    EXPECT_EQ((std::vector<unsigned short>{10, 11, 0, 12}), idsOf(menu));
    EXPECT_NE(0, menu.changeMenuToString(2, PString("was a separator"), 13));
    EXPECT_EQ((std::vector<unsigned short>{10, 11, 13, 12}), idsOf(menu));
}

TEST(PMenu, ChangeStringRefusesPopups)
{
    PMenu bar = menuOf({});
    PMenu sub = menuOf({20});
    bar.addMenu(PString("popup"), &sub);
    EXPECT_EQ(0, bar.changeString(0, PString("no")));
    PMenu other = menuOf({21});
    EXPECT_NE(0, bar.changeStringToMenu(0, PString("other"), &other));
    EXPECT_EQ(static_cast<HMENU>(other), GetSubMenu(bar, 0));
}

TEST(PMenu, SubMenusAndOwnership)
{
    PMenu bar = menuOf({});
    HMENU kept;
    HMENU dropped;
    {
        PMenu inserted = menuOf({30});
        PMenu appended = menuOf({31});
        kept = inserted;
        dropped = appended;
        // The positional form takes the ownership; the appending form leaves it.
        EXPECT_NE(0, bar.addMenu(0xFFFF, PString("inserted"), &inserted));
        EXPECT_NE(0, bar.addMenu(PString("appended"), &appended));
        bar.detachItem(1, 1);
    }
    EXPECT_TRUE(IsMenu(kept));
    EXPECT_FALSE(IsMenu(dropped));

    // A sub-menu taken from its parent never destroys it.
    {
        PMenu sub = bar.getSubMenu(0);
        EXPECT_EQ(kept, static_cast<HMENU>(sub));
    }
    EXPECT_TRUE(IsMenu(kept));

    HMENU whole = bar;
    {
        PMenu copy(bar);
        PMenu assigned;
        assigned = copy;
        EXPECT_EQ(bar, assigned);
        bar = PMenu();
        EXPECT_TRUE(IsMenu(whole));
    }
    EXPECT_FALSE(IsMenu(whole));
    EXPECT_FALSE(IsMenu(kept));
}

TEST(PMenu, StateOfAllItems)
{
    TestApplication app;
    PMenu bar(PString("TESTMENU"), &app);
    bar.grayAll(0);
    PMenu edit = bar.getSubMenu(1);
    PMenu more = edit.getSubMenu(2);
    EXPECT_EQ(1, more.isGray(ID_EDIT_DEEP, 0));
    EXPECT_EQ(1, edit.isGray(ID_EDIT_COPY, 0));
    // The popup entries themselves keep their state.
    EXPECT_EQ(1, bar.isEnabled(0, 1));
    EXPECT_EQ(1, edit.isEnabled(2, 1));

    bar.enableAll(0);
    EXPECT_EQ(1, more.isEnabled(ID_EDIT_DEEP, 0));
    EXPECT_EQ(1, edit.isEnabled(ID_EDIT_CUT, 0));

    // Flat: by position, one level, popups included.
    bar.disableAll(1);
    EXPECT_EQ(1, bar.isDisabled(0, 1));
    EXPECT_EQ(1, bar.isDisabled(1, 1));
    EXPECT_EQ(1, edit.isEnabled(ID_EDIT_COPY, 0));

    // A menu of plain items: getSubMenu returns the menu itself, and no recursion follows.
    PMenu flat = menuOf({40, 41});
    flat.grayAll(0);
    EXPECT_EQ(1, flat.isGray(41, 0));
}

TEST(PMenu, SyncSeparators)
{
    PMenu menu = menuOf({0, 50, 0, 0, 51, 0});
    menu.syncSeparators();
    EXPECT_EQ((std::vector<unsigned short>{50, 0, 51}), idsOf(menu));

    PMenu separators = menuOf({0, 0, 0});
    separators.syncSeparators();
    EXPECT_LE(separators.getMenuItemCount(), 1);

    PMenu bar = menuOf({52});
    PMenu sub = menuOf({0, 53, 0});
    bar.addMenu(PString("sub"), &sub);
    bar.addSeparator();
    bar.syncSeparators();
    EXPECT_EQ((std::vector<unsigned short>{52, 0xFFFF}), idsOf(bar));
    EXPECT_EQ((std::vector<unsigned short>{53}), idsOf(sub));
}

namespace {

int trackedX = 0;
int trackedY = 0;
UINT trackedFlags = 99;

BOOL WINAPI fakeTrackPopupMenu(HMENU, UINT flags, int x, int y, int, HWND, RECT const *)
{
    trackedFlags = flags;
    trackedX = x;
    trackedY = y;
    return 7;
}

} // namespace

TEST(PMenu, TrackMenuPopsUpTheFirstEntryAtTruncatedPoint)
{
    ImportPatch patch("TeskWin.dll", "user32.dll", "TrackPopupMenu", reinterpret_cast<void *>(fakeTrackPopupMenu));
    ASSERT_TRUE(patch.isActive());
    // No first popup: nothing to track, but the point is recorded.
    PMenu empty = menuOf({});
    EXPECT_EQ(0, empty.trackMenu(nullptr, GPoint(12.7, 30.2)));
    EXPECT_EQ(GPoint(12.7, 30.2), empty.getMenuPos());
    EXPECT_EQ(99u, trackedFlags);

    TestApplication app;
    PMenu bar(PString("TESTMENU"), &app);
    EXPECT_EQ(7, bar.trackMenu(nullptr, GPoint(-3.9, 8.9)));
    EXPECT_EQ(-3, trackedX);
    EXPECT_EQ(8, trackedY);
    EXPECT_EQ(0u, trackedFlags);
}

TEST(PAccel, LoadsFromResources)
{
    HINSTANCE module = GetModuleHandleA(nullptr);
    PAccel accel(PString("TESTACCEL"), module);
    PAccel missing;
    EXPECT_EQ(0, missing.load(PString("NOSUCHACCEL"), module));
    EXPECT_EQ(1, missing.load(PString("TESTACCEL"), module));
    // A null instance keeps the table and returns 0.
    EXPECT_EQ(0, missing.load(PString("OTHER"), nullptr));
    PAccel copy(missing);
    copy = accel;
    EXPECT_EQ(1, copy.load(PString("TESTACCEL"), module));
}
