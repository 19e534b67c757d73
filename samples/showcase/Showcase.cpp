// The showcase application: exercises the library headless and leaves a log in the
// current folder (showcase.log).
#include <TeskWin.h>

#include <cstdio>

namespace {

const unsigned short kCommandGreet = 101;
const unsigned short kCommandExit = 102;

// The application as the library sees it; only the slots the library calls carry meaning.
class ShowcaseApp : public PAppInterface {
public:
    explicit ShowcaseApp(HINSTANCE instance) : instance(instance) {}

    // The library's side.
    int idleAction() override { return 0; }
    PWindowObject *createMainWindow() override { return mainWindow; }
    PWindowObject *getMainWindow() override { return mainWindow; }
    void setMainWindow(PWindowObject *window) override { mainWindow = window; }
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

    // The context's side.
    HINSTANCE getInstance() const override { return instance; }
    HINSTANCE getResourceModule() const override { return instance; }
    PString getCommandLine() const override { return PString(""); }
    int getShowCommand() const override { return SW_SHOWNORMAL; }
    PString getProgramPath() const override { return PString("showcase.exe"); }
    PString getAppName() const override { return PString("TeskWin Showcase"); }
    PString getCompanyName() const override { return PString("TeskWin"); }
    PString getVersion() const override { return PString("0.1"); }
    PString getHelpFile() const override { return PString(""); }
    PString getWorkingFolder() const override { return PString("."); }
    PString getTempPrefix() const override { return PString("shw"); }
    int getLanguage() const override { return 0x0409; }
    int getCodePage() const override { return 1252; }
    int isInteractive() const override { return 0; }
    int initInstance() override { return 1; }
    int run() override { return 0; }
    int exitInstance() override { return exitCode; }
    int getStringId(int) const override { return 0; }
    void setExitCode(int code) override { exitCode = code; }

private:
    HINSTANCE instance;
    PWindowObject *mainWindow = nullptr;
    int exitCode = 0;
};

// Collects the log's lines and writes them out at the end.
class ShowcaseLog {
public:
    void line(char const *text) { lines.add(PString(text)); }

    void linef(char const *format, double a, double b = 0, double c = 0)
    {
        char buffer[256];
        std::snprintf(buffer, sizeof buffer, format, a, b, c);
        line(buffer);
    }

    int save(char const *name)
    {
        PFile file;
        if (!file.open(PString(name), PFile::writeAccess, PFile::shareNone, PFile::createAlways))
            return 0;
        for (unsigned int i = 0; i < lines.length(); ++i) {
            PString text = lines(i) + "\r\n";
            if (file.write(static_cast<char *>(text), text.length()) != static_cast<long>(text.length()))
                return 0;
        }
        return 1;
    }

private:
    PList<PString> lines;
};

void showContainers(ShowcaseLog &log)
{
    PList<PString> planets;
    for (char const *name : {"Mercury", "Venus", "Earth", "Mars"})
        planets.add(PString(name));
    planets.insert(PString("Sun"), 0);
    log.line("A list with a cursor, Sun inserted first:");
    for (unsigned int i = 0; i < planets.length(); ++i)
        log.line(PString("  ") + planets(i));

    PHashTable<PString, HashedId> names(211);
    names.add(PString("five"), HashedId(5));
    names.add(PString("two hundred sixteen"), HashedId(216));
    PString const *found = names.lookup(HashedId(216));
    log.line(PString("Hash table, id 216 (shares a bucket with 5): ") + (found ? *found : PString("missing")));
}

void showGeometryAndColour(ShowcaseLog &log)
{
    PTPoint<long> a(3, 4), origin(0, 0);
    log.linef("Distance from (3, 4) to the origin: %g", a.distance(origin));

    GColor teal(0, 128, 128);
    GHSVColor hsv(teal);
    log.linef("Teal as hue, saturation, value: %.1f %.3f %.3f", hsv.getH(), hsv.getS(), hsv.getV());
    hsv.getH() += 180;
    GColor opposite(hsv);
    log.linef("Its opposite hue: red %g green %g blue %g", opposite.getR(), opposite.getG(), opposite.getB());
}

void showErrorLog(ShowcaseLog &log)
{
    LogErrorMessage(IErrorMessage(PString("a warning the application reads back"), warningErrorMessage));
    log.linef("Entries in the error log: %g", getErrorLogCount());
}

// Writes what the window shows to a 24-bit .bmp file, through the library's image.
int saveScreenshot(HWND window, char const *name)
{
    RECT area;
    GetClientRect(window, &area);
    const int width = area.right, height = area.bottom;
    const unsigned long rowBytes = (width * 3 + 3) & ~3u;
    auto *header = static_cast<BITMAPINFOHEADER *>(PGlobalAlloc(sizeof(BITMAPINFOHEADER)));
    auto *pixels = static_cast<unsigned char *>(PGlobalAlloc(rowBytes * height));
    if (!header || !pixels) {
        PGlobalFree(header);
        PGlobalFree(pixels);
        return 0;
    }
    *header = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), width, height, 1, 24, BI_RGB, rowBytes * height, 0, 0, 0, 0};

    HDC screen = GetDC(window);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, 0, 0, SRCCOPY);
    SelectObject(memory, old);
    GetDIBits(memory, bitmap, 0, height, pixels, reinterpret_cast<BITMAPINFO *>(header), DIB_RGB_COLORS);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(window, screen);

    GImage image(pixels, header, GPalette());
    return image.write(PString(name)) == 0;
}

// The main window: a menu from the resources, and commands that draw, capture and close.
class ShowcaseWindow : public PWindow {
public:
    ShowcaseWindow(ShowcaseApp *app, ShowcaseLog &log)
        : PWindow(PString("TeskWin Showcase"), PString("ShowcaseMenu"), app), log(log) {}

    int commandEvent(PCommandEvent const &event) override
    {
        switch (event.getCommandId()) {
        case kCommandGreet:
            greet();
            return 1;
        case kCommandExit:
            log.line("Exit chosen: the window closes through WM_CLOSE.");
            PostMessageA(*this, WM_CLOSE, 0, 0);
            return 1;
        }
        return 0;
    }

    // The loop ends when the window is gone, and deletes this object.
    void runUntilClosed() { eventLoop(); }

private:
    void greet()
    {
        HDC dc = GetDC(*this);
        RECT area;
        GetClientRect(*this, &area);
        HBRUSH teal = CreateSolidBrush(RGB(0, 128, 128));
        FillRect(dc, &area, teal);
        DeleteObject(teal);
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, RGB(255, 255, 255));
        char const text[] = "Hello from TeskWin";
        TextOutA(dc, 20, 20, text, sizeof text - 1);
        GdiFlush();
        ReleaseDC(*this, dc);
        setCaption(PString("TeskWin Showcase - greeted"));
        log.line(saveScreenshot(*this, "showcase.bmp") ? "Greet command handled; window captured to showcase.bmp."
                                                       : "Greet command handled; the capture failed.");
    }

    ShowcaseLog &log;
};

int runMainWindow(ShowcaseApp &app, ShowcaseLog &log)
{
    auto *window = new ShowcaseWindow(&app, log);
    app.setMainWindow(window);
    window->setSize(GPoint(360, 200));
    if (!window->registerWindow() || !window->create()) {
        log.line("The main window could not be created.");
        return 1;
    }
    window->show(SW_SHOWNORMAL);
    HMENU menu = GetMenu(*window);
    log.linef("Main window created with a menu of %g entries from the resources.", menu ? GetMenuItemCount(menu) : 0);
    // Stand-ins for a person choosing Greet and then Exit from the menu.
    window->postCommandEvent(window, kCommandGreet, 0);
    window->postCommandEvent(window, kCommandExit, 0);
    window->runUntilClosed();
    log.linef("The event loop ended; the application's status code is %g.", app.getStatusCode());
    return 0;
}

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    ShowcaseApp app(instance);
    ShowcaseLog log;
    log.line(PString("TeskWin showcase: ") + app.getAppName());
    showContainers(log);
    showGeometryAndColour(log);
    showErrorLog(log);
    const int status = runMainWindow(app, log);
    log.line("Done.");
    return log.save("showcase.log") ? status : 1;
}
