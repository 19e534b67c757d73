#include "widgets/PStatusBar.h"

#include "events/PAppInterface.h"
#include "foundation/GColor.h"
#include "graphics/GBrush.h"

#include <commctrl.h>

#include <memory>
#include <new>

namespace {

// WS_CHILD, WS_VISIBLE, WS_CLIPCHILDREN, WS_BORDER and the low bit 0x10.
constexpr long statusBarStyle = 0x52800010;
constexpr unsigned int statusBarId = 100;
// The part that SB_SETTEXTA writes in simple mode: part 255 with SBT_NOBORDERS.
constexpr WPARAM simplePart = 0x1FF;
// What SB_GETPARTS is asked for to count the parts.
constexpr WPARAM allParts = 255;
// A first part that runs to the right edge.
constexpr int toRightEdge = -1;
// Where the progress bar stands in the status window when it has the bar to itself.
constexpr int progressLeft = 4;
constexpr int progressTop = 4;

// WS_CHILD, WS_VISIBLE, WS_CLIPSIBLINGS.
constexpr unsigned long progressBarStyle = 0x54000000;
constexpr int progressWidth = 100;
constexpr int progressHeight = 20;

} // namespace

PStatusBar::PStatusBar(PWindow *parent) : PWindow(parent, PString(), nullptr), simple(0), progress(nullptr)
{
    autoCreate = 0;
    isMDIChild = 0;
}

int PStatusBar::create()
{
    HWND created = CreateStatusWindowA(statusBarStyle, "", parent ? static_cast<HWND>(*parent) : nullptr,
                                       statusBarId);
    if (!created)
        return 0;
    hwnd = created;
    addWinPtr(this, created);
    setupWindow();
    return 1;
}

void PStatusBar::resize()
{
    SendMessageA(hwnd, WM_SIZE, 0, 0);
    repaint(1);
}

int PStatusBar::resize(GPoint const &size)
{
    if (!hwnd)
        return 0;
    const LPARAM packed = MAKELPARAM(truncateCoord(size.xVal()), truncateCoord(size.yVal()));
    return static_cast<int>(SendMessageA(hwnd, WM_SIZE, 0, packed));
}

// Each section's right edge lies one pixel past the previous edge plus its width.
void PStatusBar::addSection(int width)
{
    const int count = static_cast<int>(SendMessageA(hwnd, SB_GETPARTS, 0, 0));
    // A live status window always has a part; one that has gone reports none.
    if (count < 1)
        return;
    std::unique_ptr<int[]> edges(new (std::nothrow) int[count + 1]);
    if (!edges)
        return;
    SendMessageA(hwnd, SB_GETPARTS, count, reinterpret_cast<LPARAM>(edges.get()));
    if (count == 1 && edges[0] == toRightEdge) {
        edges[0] = width;
        SendMessageA(hwnd, SB_SETPARTS, 1, reinterpret_cast<LPARAM>(edges.get()));
        return;
    }
    edges[count] = edges[count - 1] + 1 + width;
    SendMessageA(hwnd, SB_SETPARTS, count + 1, reinterpret_cast<LPARAM>(edges.get()));
    SendMessageA(hwnd, WM_SIZE, 0, 0);
}

void PStatusBar::write(PString const &text, int section)
{
    const WPARAM part = simple ? simplePart : static_cast<WPARAM>(section);
    SendMessageA(hwnd, SB_SETTEXTA, part, reinterpret_cast<LPARAM>(static_cast<char const *>(text)));
    SendMessageA(hwnd, WM_PAINT, 0, 0);
}

void PStatusBar::setHeight(int height)
{
    SendMessageA(hwnd, SB_SETMINHEIGHT, static_cast<WPARAM>(height), 0);
    SendMessageA(hwnd, WM_SIZE, 0, 0);
}

int PStatusBar::getHeight() const
{
    RECT rect = {};
    SendMessageA(hwnd, SB_GETRECT, 0, reinterpret_cast<LPARAM>(&rect));
    return rect.bottom - rect.top;
}

int PStatusBar::setSimple(int on)
{
    simple = on ? 1 : 0;
    return static_cast<int>(SendMessageA(hwnd, SB_SIMPLE, static_cast<WPARAM>(on), 0));
}

int PStatusBar::numFields()
{
    if (!isValidWindow())
        return 0;
    return static_cast<int>(SendMessageA(hwnd, SB_GETPARTS, allParts, 0));
}

GRect PStatusBar::getFieldSize(int section)
{
    if (!isValidWindow())
        return GRect();
    RECT rect = {};
    SendMessageA(hwnd, SB_GETRECT, static_cast<WPARAM>(section), reinterpret_cast<LPARAM>(&rect));
    return GRect(rect);
}

// The range stays the platform's 0 to 100, so percent goes in unscaled.
int PStatusBar::showPercentDone(int percent, PString const &text)
{
    if (progress) {
        progress->setProgress(percent);
        return 0;
    }
    write(text, 0);
    progress = new (std::nothrow) PProgressBar(this);
    if (!progress)
        return -1;
    int left = progressLeft;
    if (numFields() < 2) {
        write(PString(), 0);
    } else {
        const GRect field = getFieldSize(1);
        left = truncateCoord(field.lVal());
        progress->setWidth(truncateCoord(field.width()));
        write(PString(), 1);
    }
    SendMessageA(hwnd, WM_PAINT, 0, 0);
    progress->setXPos(left);
    progress->setYPos(progressTop);
    progress->setHeight(truncateCoord(getClientArea().height()));
    // The application makes the window exist.
    if (PAppInterface *application = getApp())
        application->setProgressBar(progress);
    progress->setStep(1);
    progress->setProgress(percent);
    return 0;
}

void PStatusBar::clearPercentDone()
{
    if (progress) {
        progress->closeWindow();
        progress = nullptr;
    }
    write(PString(), 0);
}

PProgressBar::PProgressBar(PWindowObject *parent) : PWindow(parent, PString(), nullptr)
{
    InitCommonControls();
    setBackground(GBrush(GColor::Black));
    style = progressBarStyle;
    isMDIChild = 0;
    width = progressWidth;
    height = progressHeight;
}

char *PProgressBar::getClassName()
{
    static char className[] = "msctls_progress32";
    return className;
}

int PProgressBar::create()
{
    hwnd = CreateWindowExA(0, getClassName(), nullptr, style, x, y, width, height,
                           parent ? static_cast<HWND>(*parent) : nullptr, nullptr, getAppInstance(), nullptr);
    addWinPtr(this, hwnd);
    return 1;
}

int PProgressBar::setRange(int min, int max)
{
    if (!isValidWindow())
        return 0;
    SendMessageA(hwnd, PBM_SETRANGE, 0, MAKELPARAM(min, max));
    return 1;
}

int PProgressBar::setStep(int step)
{
    if (!isValidWindow())
        return 0;
    SendMessageA(hwnd, PBM_SETSTEP, static_cast<WPARAM>(step), 0);
    return 1;
}

int PProgressBar::step()
{
    SendMessageA(hwnd, PBM_STEPIT, 0, 0);
    return 1;
}

void PProgressBar::setProgress(int position)
{
    SendMessageA(hwnd, PBM_SETPOS, static_cast<WPARAM>(position), 0);
}
