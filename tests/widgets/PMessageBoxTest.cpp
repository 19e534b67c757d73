#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/ImportPatch.h"
#include "support/TestApplication.h"

#include <string>

namespace {

// What the last box was asked to show, and the answer it gives.
struct BoxCall {
    HWND owner = nullptr;
    std::string text;
    std::string caption;
    UINT style = 0;
    int answer = IDOK;
} lastBox;

int WINAPI fakeMessageBoxA(HWND owner, char const *text, char const *caption, UINT style)
{
    lastBox.owner = owner;
    lastBox.text = text ? text : "";
    lastBox.caption = caption ? caption : "";
    lastBox.style = style;
    return lastBox.answer;
}

class PMessageBoxTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(patch.isActive()); }

    ImportPatch patch{"TeskWin.dll", "user32.dll", "MessageBoxA", reinterpret_cast<void *>(fakeMessageBoxA)};
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

} // namespace

TEST_F(PMessageBoxTest, StylesCombineButtonSetIconAndDefault)
{
    PMBYesNo(nullptr, 4, 2).execute(PString("caption"), PString("text"));
    EXPECT_EQ(0x124u, lastBox.style);
    EXPECT_EQ("caption", lastBox.caption);
    EXPECT_EQ("text", lastBox.text);
    EXPECT_EQ(nullptr, lastBox.owner);

    PMessageBox(nullptr, 0, 0).execute(PString("c"), PString("t"));
    EXPECT_EQ(static_cast<UINT>(MB_OK), lastBox.style);
    // The first integer is the icon.
    PMBOkayCancel(nullptr, 2, 4).execute(PString("c"), PString("t"));
    EXPECT_EQ(static_cast<UINT>(MB_OKCANCEL | MB_ICONEXCLAMATION), lastBox.style);
    PMBOkayCancel(nullptr, 4, 2).execute(PString("c"), PString("t"));
    EXPECT_EQ(static_cast<UINT>(MB_OKCANCEL | MB_ICONQUESTION | MB_DEFBUTTON2), lastBox.style);
    PMBYesNoCancel(nullptr, 1, 3).execute(PString("c"), PString("t"));
    EXPECT_EQ(static_cast<UINT>(MB_YESNOCANCEL | MB_ICONINFORMATION | MB_DEFBUTTON3), lastBox.style);
    PMBRetryCancel(nullptr, 3, 1).execute(PString("c"), PString("t"));
    EXPECT_EQ(static_cast<UINT>(MB_RETRYCANCEL | MB_ICONSTOP), lastBox.style);
    PMBAbortRetryIgnore abort(nullptr, 5, 9);
    PMBAbortRetryIgnore copy(abort);
    copy.execute(PString("c"), PString("t"));
    EXPECT_EQ(static_cast<UINT>(MB_ABORTRETRYIGNORE), lastBox.style);
}

TEST_F(PMessageBoxTest, AnswersBecomeTheLibrarysCodes)
{
    PMBAbortRetryIgnore box(nullptr, 0, 0);
    const int answers[] = {0, IDOK, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO, 8, -1};
    const int codes[] = {0, 0, 1, 5, 4, 0, 2, 3, 0, 0};
    for (int i = 0; i < 10; ++i) {
        lastBox.answer = answers[i];
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
    EXPECT_EQ(window, lastBox.owner);

    // A window that has gone gives a box without owner.
    DestroyWindow(window);
    lastBox.answer = IDCANCEL;
    EXPECT_EQ(1, box.execute(PString("c"), PString("t")));
    EXPECT_EQ(nullptr, lastBox.owner);
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
