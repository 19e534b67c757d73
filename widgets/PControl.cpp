#include "widgets/PControl.h"

#include "contexts/GContext.h"
#include "events/PEvent.h"
#include "graphics/GBrush.h"
#include "graphics/GPen.h"
#include "widgets/PSysColorManager.h"

#include <algorithm>
#include <new>

namespace {

// The style of every control the library makes: WS_CHILD, WS_VISIBLE, WS_GROUP, WS_TABSTOP.
constexpr unsigned long controlStyle = 0x50030000;

// Ids handed out by getUniqueControlId run over this range; the fallback when it is full.
constexpr int firstUniqueId = 6500;
constexpr int lastUniqueId = 11500;
constexpr int exhaustedId = 100;

// Moved before it is read: the first id handed out is 6501, and 6500 comes only after a wrap.
int uniqueIdCounter = firstUniqueId;

int nextUniqueCandidate()
{
    if (++uniqueIdCounter > lastUniqueId)
        uniqueIdCounter = firstUniqueId;
    return uniqueIdCounter;
}

// The frame of dmDrawBox.
constexpr int markPenWidth = 2;

} // namespace

PHashTable<PControl *, HashedId> PControl::theControlTable(PHashTable<PControl *, HashedId>::theStandardBucketCount);

PControl::PControl(PWindowObject *parent, int id, PString const &title, int x, int y, int width, int height,
                   PAppInterface *app)
    : PWindow(parent, title, app), font(nullptr), displayMode(DMNormal)
{
    controlId = id;
    setId(id);
    this->x = x;
    this->y = y;
    this->width = width;
    this->height = height;
    style = controlStyle;
    isMDIChild = 0;
    defaultProc = nullptr;
    registerId();
}

PControl::PControl(PWindowObject *parent, int id, PAppInterface *app)
    : PWindow(parent, PString(), app), font(nullptr), displayMode(DMNormal)
{
    attachedChild = 1;
    controlId = id;
    disableAutoCreate();
    isMDIChild = 0;
    defaultProc = nullptr;
    registerId();
    if (parent && parent->isValidWindow()) {
        hwnd = GetDlgItem(*parent, id);
        addWinPtr(this, hwnd);
    }
}

// Each copy owns a font object of its own, sharing the platform font, so that both
// destructors may delete theirs.
PControl::PControl(PControl const &other)
    : PWindow(other), markRect(other.markRect), font(other.font ? new (std::nothrow) GFont(*other.font) : nullptr),
      displayMode(other.displayMode)
{
}

PControl &PControl::operator=(PControl const &other)
{
    if (this == &other)
        return *this;
    PWindow::operator=(other);
    markRect = other.markRect;
    delete font;
    font = other.font ? new (std::nothrow) GFont(*other.font) : nullptr;
    displayMode = other.displayMode;
    return *this;
}

PControl::~PControl()
{
    delete font;
    font = nullptr;
    if (controlId != 0)
        removeControlPtr(HashedId(controlId));
}

void PControl::registerId()
{
    if (controlId == 0)
        return;
    HashedId key(controlId);
    addControlPtr(this, key);
}

void PControl::setupWindow()
{
    PWindow::setupWindow();
    if (font)
        setFont(*font);
}

int PControl::getId()
{
    return controlId;
}

int PControl::processEvent(PEvent const &event)
{
    switch (event.getMessage()) {
    case WM_SYSCOLORCHANGE:
        setBackground(GBrush(PSysColorManager::getFace3D()));
        break;
    case PM_DRAWMARK:
        if (displayMode == DMInvert)
            dmDrawInvert();
        else if (displayMode == DMBox)
            dmDrawBox();
        break;
    default:
        break;
    }
    return 0;
}

void PControl::drawSelected(GContext &)
{
}

void PControl::drawUnselected(GContext &)
{
}

void PControl::drawFocus(GContext &)
{
}

int PControl::getTextLen()
{
    return GetWindowTextLengthA(hwnd);
}

void PControl::setText(PString const &text)
{
    SetWindowTextA(hwnd, text);
}

GFont PControl::setFont(GFont const &newFont)
{
    const bool live = isValidWindow();
    GFont previous = live ? getFont() : newFont;
    if (!font)
        font = new (std::nothrow) GFont(newFont);
    else if (font != &newFont)
        *font = newFont;
    if (live)
        SendMessageA(hwnd, WM_SETFONT, reinterpret_cast<WPARAM>(static_cast<HFONT>(newFont)), TRUE);
    return previous;
}

GFont PControl::getFont()
{
    if (font)
        return *font;
    return GFont(reinterpret_cast<HFONT>(SendMessageA(hwnd, WM_GETFONT, 0, 0)));
}

void PControl::clear()
{
    setText(PString());
}

int PControl::getText(PString &text, int maxLength)
{
    const int length = getTextLen();
    PString buffer(length + 1, ' ');
    const int copied = GetWindowTextA(hwnd, buffer, std::min(maxLength, length + 1));
    buffer.resize();
    text = buffer;
    return copied;
}

PControl::DisplayMode PControl::setDisplayMode(DisplayMode mode)
{
    if (mode != displayMode) {
        displayMode = mode;
        repaint(1);
    }
    return displayMode;
}

void PControl::addControlPtr(PControl *control, HashedId &id)
{
    theControlTable.add(control, id);
}

void PControl::removeControlPtr(HashedId const &id)
{
    theControlTable.remove(id);
}

PControl *PControl::getControlPtr(HashedId const &id)
{
    PControl *const *found = theControlTable.lookup(id);
    return found ? *found : nullptr;
}

// The counter stays where the search ended.
int PControl::getUniqueControlId()
{
    const int start = nextUniqueCandidate();
    for (int candidate = start;;) {
        if (!getControlPtr(HashedId(candidate)))
            return candidate;
        candidate = nextUniqueCandidate();
        if (candidate == start)
            return exhaustedId;
    }
}

void PControl::dmDrawInvert()
{
    GContext context(this, GCClient);
    context.setXOR(1);
    GRect grown(markRect.lVal() - 1, markRect.tVal() - 1, markRect.rVal() + 1, markRect.bVal() + 1);
    context.fillRectangle(grown, GBrush(GColor::White));
    context.setXOR(0);
}

// The right edge is inset by 2 and the bottom by 1: the look asks for it. Deliberate.
void PControl::dmDrawBox()
{
    GContext context(this, GCClient);
    const GRect area = getClientArea();
    context.setPen(GPen(GColor::Red, markPenWidth, LineSolid));
    const double l = area.lVal(), t = area.tVal(), r = area.rVal(), b = area.bVal();
    context.moveTo(l + 1, t + 1);
    context.lineTo(r - 2, t + 1);
    context.lineTo(r - 2, b - 1);
    context.lineTo(l + 1, b - 1);
    context.lineTo(l + 1, t + 1);
}

PScrollBar::PScrollBar(PWindowObject *parent, int id, int x, int y, int width, int height, int horizontal,
                       PAppInterface *app)
    : PControl(parent, id, PString(), x, y, width, height, app), reservedWord(0), lineStep(1), pageStep(10)
{
    if (!horizontal) {
        style |= SBS_VERT;
        if (width == 0)
            this->width = GetSystemMetrics(SM_CXVSCROLL);
    } else if (height == 0) {
        this->height = GetSystemMetrics(SM_CYHSCROLL);
    }
}

PScrollBar::PScrollBar(PWindowObject *parent, int id, PAppInterface *app)
    : PControl(parent, id, app), reservedWord(0), lineStep(1), pageStep(10)
{
}

char *PScrollBar::getClassName()
{
    static char className[] = "SCROLLBAR";
    return className;
}

void PScrollBar::setupWindow()
{
    hwnd = GetDlgItem(parent ? static_cast<HWND>(*parent) : nullptr, controlId);
    addWinPtr(this, hwnd);
    setRange(0, 100);
    PControl::setupWindow();
}

int PScrollBar::hScrollEvent(unsigned int code, int thumb)
{
    return scrolled(code, thumb);
}

// The vertical bar's event carries WM_HSCROLL as well. Deliberate.
int PScrollBar::vScrollEvent(unsigned int code, int thumb)
{
    return scrolled(code, thumb);
}

int PScrollBar::scrolled(unsigned int code, int thumb)
{
    const PEvent event(this, WM_HSCROLL, static_cast<WPARAM>(thumb), 0);
    switch (code) {
    case SB_LINEUP: sbLineUpEvent(event); break;
    case SB_LINEDOWN: sbLineDownEvent(event); break;
    case SB_PAGEUP: sbPageUpEvent(event); break;
    case SB_PAGEDOWN: sbPageDownEvent(event); break;
    case SB_THUMBPOSITION: sbThumbPositionEvent(event); break;
    case SB_THUMBTRACK: sbThumbTrackEvent(event); break;
    case SB_TOP: sbTopEvent(event); break;
    case SB_BOTTOM: sbBottomEvent(event); break;
    default: break;
    }
    const PEvent command(parent, WM_COMMAND, static_cast<WPARAM>(getId() & 0xFFFF),
                         reinterpret_cast<LPARAM>(static_cast<HWND>(hwnd)));
    sendEvent(parent, command);
    return 1;
}

int PScrollBar::sbBottomEvent(PEvent const &)
{
    int min = 0, max = 0;
    getRange(min, max);
    setPosition(max);
    return 1;
}

int PScrollBar::sbLineDownEvent(PEvent const &)
{
    deltaPos(lineStep);
    return 1;
}

int PScrollBar::sbLineUpEvent(PEvent const &)
{
    deltaPos(-lineStep);
    return 1;
}

int PScrollBar::sbPageDownEvent(PEvent const &)
{
    deltaPos(pageStep);
    return 1;
}

int PScrollBar::sbPageUpEvent(PEvent const &)
{
    deltaPos(-pageStep);
    return 1;
}

int PScrollBar::sbThumbPositionEvent(PEvent const &event)
{
    setPosition(static_cast<int>(event.getLParam() & 0xFFFF));
    return 1;
}

int PScrollBar::sbThumbTrackEvent(PEvent const &event)
{
    setPosition(static_cast<int>(event.getLParam() & 0xFFFF));
    return 1;
}

int PScrollBar::sbTopEvent(PEvent const &)
{
    int min = 0, max = 0;
    getRange(min, max);
    setPosition(min);
    return 1;
}

// A bar whose window has gone reads as the range 0 to 0.
void PScrollBar::getRange(int &min, int &max)
{
    min = max = 0;
    GetScrollRange(hwnd, SB_CTL, &min, &max);
}

int PScrollBar::getPosition()
{
    return GetScrollPos(hwnd, SB_CTL);
}

void PScrollBar::setRange(int min, int max)
{
    SetScrollRange(hwnd, SB_CTL, min, max, FALSE);
}

void PScrollBar::setPosition(int position)
{
    int min = 0, max = 0;
    getRange(min, max);
    if (position > max)
        position = max;
    else if (position < min)
        position = min;
    if (position != getPosition())
        SetScrollPos(hwnd, SB_CTL, position, TRUE);
}

int PScrollBar::deltaPos(int delta)
{
    if (delta != 0)
        setPosition(getPosition() + delta);
    return getPosition();
}
