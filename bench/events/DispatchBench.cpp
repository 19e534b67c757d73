// DispatchBench - one message through PWindowProc against a bare window procedure that
// answers the same message, in nanoseconds per message: called directly, and sent.
//   wine events_dispatch_bench.exe
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>

#include <cstdio>

namespace {

const UINT theQuestion = WM_USER + 1;

LRESULT answer(WPARAM wParam, LPARAM lParam)
{
    return static_cast<LRESULT>(wParam * 2 + lParam);
}

LRESULT CALLBACK bareProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == theQuestion)
        return answer(wParam, lParam);
    return DefWindowProcA(hwnd, message, wParam, lParam);
}

class BenchApp : public PAppInterface {
public:
    ~BenchApp() = default;
    int idleAction() override { return 0; }
    PWindowObject *createMainWindow() override { return nullptr; }
    PWindowObject *getMainWindow() override { return nullptr; }
    void setMainWindow(PWindowObject *) override {}
    PStatusBar *getStatusBar() override { return nullptr; }
    void showMainWindow(int) override {}
    PProgressBar *getProgressBar() override { return nullptr; }
    int canExit() override { return 1; }
    void setProgressBar(PProgressBar *) override {}
    PAccel *getAccelerators() override { return nullptr; }
    void setAccelerators(PAccel *) override {}
    unsigned long getHelpContext() override { return 0; }
    void setHelpContext(unsigned long) override {}
    int hotKeyEvent(PEvent const &) override { return 0; }
    int capturedKeyEvent(PEvent const &) override { return 0; }
    HINSTANCE getInstance() const override { return GetModuleHandleA(nullptr); }
    HINSTANCE getResourceModule() const override { return GetModuleHandleA(nullptr); }
    PString getCommandLine() const override { return PString(); }
    int getShowCommand() const override { return SW_SHOW; }
    PString getProgramPath() const override { return PString(); }
    PString getAppName() const override { return PString("DispatchBench"); }
    PString getCompanyName() const override { return PString(); }
    PString getVersion() const override { return PString(); }
    PString getHelpFile() const override { return PString(); }
    PString getWorkingFolder() const override { return PString(); }
    PString getTempPrefix() const override { return PString(); }
    int getLanguage() const override { return 0; }
    int getCodePage() const override { return 0; }
    int isInteractive() const override { return 0; }
    int initInstance() override { return 1; }
    int run() override { return 0; }
    int exitInstance() override { return 0; }
    int getStringId(int) const override { return 0; }
    void setExitCode(int) override {}
};

// Answers the question in processEvent, where a message without a route of its own arrives.
class AnsweringWindow : public PWindow {
public:
    explicit AnsweringWindow(PAppInterface *app) : PWindow(nullptr, "bench", app, 0) {}
    int processEvent(PEvent const &event) override
    {
        return event.getMessage() == theQuestion ? static_cast<int>(answer(event.getWParam(), event.getLParam())) : 0;
    }
};

volatile LRESULT theSink;
// Called through these, neither procedure can be inlined into the timing loop.
WNDPROC volatile theBareProc = bareProc;
WNDPROC volatile theLibraryProc = PWindowProc;

template <typename Call>
double nanosecondsPerMessage(int messages, Call call)
{
    return nanosecondsPerCall(messages, [&](int count) {
        for (int i = 0; i < count; ++i)
            theSink = call(i);
    });
}

} // namespace

int main()
{
    BenchApp app;
    WNDCLASSA bareClass = {};
    bareClass.lpfnWndProc = bareProc;
    bareClass.hInstance = GetModuleHandleA(nullptr);
    bareClass.lpszClassName = "BareBench";
    RegisterClassA(&bareClass);
    HWND bare = CreateWindowExA(0, "BareBench", "bare", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                                bareClass.hInstance, nullptr);
    AnsweringWindow *object = new AnsweringWindow(&app);
    object->registerWindow();
    if (!bare || !object->create()) {
        std::printf("could not create the windows\n");
        return 1;
    }
    HWND wrapped = *object;

    const int messages = 1000000;
    // Warm both paths before timing.
    nanosecondsPerMessage(messages / 10, [&](int i) { return theLibraryProc(wrapped, theQuestion, i, 1); });
    const double bareDirect = nanosecondsPerMessage(messages, [&](int i) { return theBareProc(bare, theQuestion, i, 1); });
    const double wrappedDirect =
        nanosecondsPerMessage(messages, [&](int i) { return theLibraryProc(wrapped, theQuestion, i, 1); });
    // The table and the handler without the platform queries of the lookup and the event.
    const PEvent built(object, theQuestion, 0, 1);
    const double dispatchOnly = nanosecondsPerMessage(messages, [&](int) { return PGeneralProc(built); });
    const double bareSent =
        nanosecondsPerMessage(messages, [&](int i) { return SendMessageA(bare, theQuestion, i, 1); });
    const double wrappedSent =
        nanosecondsPerMessage(messages, [&](int i) { return SendMessageA(wrapped, theQuestion, i, 1); });

    std::printf("%-34s %12s %12s %8s\n", "one message", "bare (ns)", "PWindowProc", "ratio");
    std::printf("%-34s %12.1f %12.1f %8.1f\n", "window procedure called directly", bareDirect, wrappedDirect,
                wrappedDirect / bareDirect);
    std::printf("%-34s %12.1f %12.1f %8.1f\n", "dispatch alone (PGeneralProc)", bareDirect, dispatchOnly,
                dispatchOnly / bareDirect);
    std::printf("%-34s %12.1f %12.1f %8.1f\n", "sent with SendMessageA", bareSent, wrappedSent,
                wrappedSent / bareSent);

    object->shutDownWindow();
    DestroyWindow(bare);
    return 0;
}
