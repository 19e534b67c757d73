// Proves the display path of the test machine: a real window gets a sent message
// and a posted one, answered by its own window procedure.
#include <gtest/gtest.h>
#include <windows.h>

namespace {

const UINT kAsk = WM_APP + 1;
int postedSeen = 0;

LRESULT CALLBACK answeringProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == kAsk) {
        ++postedSeen;
        return static_cast<LRESULT>(wParam * 2 + lParam);
    }
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

TEST(Display, RealWindowAnswersSentAndPostedMessages)
{
    WNDCLASSA wc = {};
    wc.lpfnWndProc = answeringProc;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "HarnessProbe";
    ASSERT_NE(RegisterClassA(&wc), 0);

    HWND hwnd = CreateWindowExA(0, "HarnessProbe", "probe", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100,
                                nullptr, nullptr, wc.hInstance, nullptr);
    ASSERT_NE(hwnd, nullptr);
    EXPECT_EQ(SendMessageA(hwnd, kAsk, 20, 2), 42);

    postedSeen = 0;
    ASSERT_TRUE(PostMessageA(hwnd, kAsk, 0, 0));
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageA(&msg);
    EXPECT_EQ(postedSeen, 1);

    EXPECT_TRUE(DestroyWindow(hwnd));
    EXPECT_FALSE(IsWindow(hwnd));
}

} // namespace
