#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/FakeMessageBox.h"
#include "support/TestApplication.h"

#include <string>

namespace {

class PMessageBoxTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(box.isActive()); }

    FakeMessageBox box;
};

// A window object with a live window, for owners.
class OwnerWindow : public PWindow {
public:
    explicit OwnerWindow(PAppInterface *app) : PWindow(nullptr, PString("owner"), app, 0) {}
    void bindTo(HWND handle)
    {
        hwnd = handle;
        addWinPtr(this, handle);
    }
};

// The style the box asks the platform for.
template <class Box>
UINT styleOf(Box &&box)
{
    box.execute(PString("c"), PString("t"));
    return FakeMessageBox::last.style;
}

} // namespace

TEST_F(PMessageBoxTest, StylesCombineButtonSetIconAndDefault)
{
    PMBYesNo(nullptr, 4, 2).execute(PString("caption"), PString("text"));
    EXPECT_EQ(0x124u, FakeMessageBox::last.style);
    EXPECT_EQ("caption", FakeMessageBox::last.caption);
    EXPECT_EQ("text", FakeMessageBox::last.text);
    EXPECT_EQ(nullptr, FakeMessageBox::last.owner);

    EXPECT_EQ(static_cast<UINT>(MB_OK), styleOf(PMessageBox(nullptr, 0, 0)));
    // The first integer is the icon.
    EXPECT_EQ(static_cast<UINT>(MB_OKCANCEL | MB_ICONEXCLAMATION), styleOf(PMBOkayCancel(nullptr, 2, 4)));
    EXPECT_EQ(static_cast<UINT>(MB_OKCANCEL | MB_ICONQUESTION | MB_DEFBUTTON2), styleOf(PMBOkayCancel(nullptr, 4, 2)));
    EXPECT_EQ(static_cast<UINT>(MB_YESNOCANCEL | MB_ICONINFORMATION | MB_DEFBUTTON3),
              styleOf(PMBYesNoCancel(nullptr, 1, 3)));
    EXPECT_EQ(static_cast<UINT>(MB_RETRYCANCEL | MB_ICONSTOP), styleOf(PMBRetryCancel(nullptr, 3, 1)));
    PMBAbortRetryIgnore abort(nullptr, 5, 9);
    EXPECT_EQ(static_cast<UINT>(MB_ABORTRETRYIGNORE), styleOf(PMBAbortRetryIgnore(abort)));
}

TEST_F(PMessageBoxTest, AnswersBecomeTheLibrarysCodes)
{
    PMBAbortRetryIgnore box(nullptr, 0, 0);
    const int answers[] = {0, IDOK, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO, 8, -1};
    const int codes[] = {0, 0, 1, 5, 4, 0, 2, 3, 0, 0};
    for (int i = 0; i < 10; ++i) {
        FakeMessageBox::answer = answers[i];
        EXPECT_EQ(codes[i], box.execute(PString("c"), PString("t"))) << "answer " << answers[i];
    }
}

TEST_F(PMessageBoxTest, OwnerWindowOnlyWhileValid)
{
    TestApplication app;
    OwnerWindow *owner = new OwnerWindow(&app);
    HWND window = CreateWindowExA(0, "STATIC", "owner", WS_POPUP, 0, 0, 50, 50, nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, window);
    owner->bindTo(window);
    PMBOkayCancel box(owner, 0, 0);
    box.execute(PString("c"), PString("t"));
    EXPECT_EQ(window, FakeMessageBox::last.owner);

    // A window that has gone gives a box without owner.
    DestroyWindow(window);
    FakeMessageBox::answer = IDCANCEL;
    EXPECT_EQ(1, box.execute(PString("c"), PString("t")));
    EXPECT_EQ(nullptr, FakeMessageBox::last.owner);
    PWindowObject::deleteWindow(owner);
}

namespace {

struct BoxSearch {
    char const *caption;
    HWND found;
};

BOOL CALLBACK matchCaption(HWND window, LPARAM data)
{
    auto *search = reinterpret_cast<BoxSearch *>(data);
    char title[64] = {};
    GetWindowTextA(window, title, sizeof title);
    if (std::string(title) != search->caption)
        return TRUE;
    search->found = window;
    return FALSE;
}

// The box of this thread with the given caption, once it is up.
HWND findBox(char const *caption)
{
    BoxSearch search{caption, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), matchCaption, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

struct Seen {
    int defaultButton = 0;
    bool hasYes = false;
    bool hasCancel = true;
    bool pressed = false;
} seen;

// Runs inside the box's own modal loop: looks at the box and presses Yes.
void CALLBACK pressYes(HWND, UINT, UINT_PTR timer, DWORD)
{
    HWND box = findBox("Real box");
    if (!box)
        return;
    KillTimer(nullptr, timer);
        for (int button : {IDYES, IDNO}) {
        if ((GetWindowLongA(GetDlgItem(box, button), GWL_STYLE) & 0x0F) == BS_DEFPUSHBUTTON)
            seen.defaultButton = button;
    }
    seen.hasYes = GetDlgItem(box, IDYES) != nullptr;
    seen.hasCancel = GetDlgItem(box, IDCANCEL) != nullptr;
    seen.pressed = true;
    PostMessageA(box, WM_COMMAND, MAKEWPARAM(IDYES, BN_CLICKED), reinterpret_cast<LPARAM>(GetDlgItem(box, IDYES)));
}

} // namespace

TEST(PMessageBox, RealBoxIsDrivenFromATimer)
{
    UINT_PTR timer = SetTimer(nullptr, 0, 50, pressYes);
    ASSERT_NE(0u, timer);
    int result = PMBYesNo(nullptr, 4, 2).execute(PString("Real box"), PString("Shall we?"));
    EXPECT_TRUE(seen.pressed);
    EXPECT_EQ(2, result);
    EXPECT_TRUE(seen.hasYes);
    EXPECT_FALSE(seen.hasCancel);
    EXPECT_EQ(IDNO, seen.defaultButton);
}
