#include "RecordingWindow.h"

#include <sstream>

namespace {

std::string pointText(GPoint const &point)
{
    std::ostringstream text;
    text << point.getX() << "," << point.getY();
    return text.str();
}

} // namespace

const char *const RecordingWindow::className = "EventsTestWindow";

RecordingWindow::RecordingWindow(PWindowObject *parent, PAppInterface *app, EventLog &log, std::string name)
    : PWindowObject(parent, app), name(std::move(name)), log(log)
{
    defaultProc = PWindowProc;
}

RecordingWindow::~RecordingWindow()
{
    record("deleted " + std::to_string(getStatusCode()));
    if (deletions)
        ++*deletions;
}

void RecordingWindow::getWindowClass(tagWNDCLASSA &windowClass)
{
    windowClass = WNDCLASSA{};
    windowClass.lpfnWndProc = getDefaultProc();
    windowClass.hInstance = GetModuleHandleA(nullptr);
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.lpszClassName = className;
}

int RecordingWindow::create()
{
    if (!created)
        return 0;
    HWND parentHandle = getParent() ? static_cast<HWND>(*getParent()) : nullptr;
    const DWORD style = parentHandle ? WS_CHILD | WS_VISIBLE : WS_OVERLAPPEDWINDOW;
    HWND handle = CreateWindowExA(0, className, name.c_str(), style, 10, 10, 200, 150, parentHandle,
                                  parentHandle ? reinterpret_cast<HMENU>(static_cast<INT_PTR>(testId)) : nullptr,
                                  GetModuleHandleA(nullptr), nullptr);
    if (!handle)
        return 0;
    bind(handle);
    return 1;
}

void RecordingWindow::bind(HWND handle)
{
    hwnd = handle;
    addWinPtr(this, handle);
}

void RecordingWindow::answer(std::string const &handler, int value)
{
    answers.emplace_back(handler, value);
}

int RecordingWindow::answerOf(std::string const &handler) const
{
    for (auto const &entry : answers)
        if (entry.first == handler)
            return entry.second;
    return 0;
}

void RecordingWindow::record(std::string const &line)
{
    log.push_back(name + ":" + line);
}

int RecordingWindow::processEvent(PEvent const &event)
{
    std::ostringstream text;
    text << "processEvent " << std::hex << event.getMessage();
    record(text.str());
    return answerOf("processEvent");
}

int RecordingWindow::processCommandEvent(PEvent const &event)
{
    record("processCommandEvent " + std::to_string(event.getCommandId()));
    return answerOf("processCommandEvent");
}

int RecordingWindow::processNotificationEvent(PEvent const &event)
{
    record("processNotificationEvent " + std::to_string(event.getCommandId()));
    return answerOf("processNotificationEvent");
}

int RecordingWindow::timerEvent()
{
    record("timerEvent");
    return answerOf("timerEvent");
}

int RecordingWindow::resizeEvent(GPoint const &size)
{
    record("resizeEvent " + pointText(size));
    return answerOf("resizeEvent");
}

int RecordingWindow::moveEvent(GPoint const &position)
{
    record("moveEvent " + pointText(position));
    return answerOf("moveEvent");
}

int RecordingWindow::hScrollEvent(unsigned int code, int position)
{
    record("hScrollEvent " + std::to_string(code) + " " + std::to_string(position));
    return answerOf("hScrollEvent");
}

int RecordingWindow::vScrollEvent(unsigned int code, int position)
{
    record("vScrollEvent " + std::to_string(code) + " " + std::to_string(position));
    return answerOf("vScrollEvent");
}

int RecordingWindow::scrollEvent(PScrollEvent const &event)
{
    record("scrollEvent " + std::to_string(event.getScrollCode()));
    return answerOf("scrollEvent");
}

int RecordingWindow::mouseEvent(PMouseEvent const &event)
{
    record("mouseEvent " + pointText(event.getLocation()));
    return answerOf("mouseEvent");
}

int RecordingWindow::notifyEvent(PNotifyEvent const &event)
{
    record("notifyEvent " + std::to_string(event.getMessageId()) + " " + std::to_string(event.getControlId()));
    return answerOf("notifyEvent");
}

int RecordingWindow::commandEvent(PCommandEvent const &event)
{
    record("commandEvent " + std::to_string(event.getWParam()));
    return answerOf("commandEvent");
}

int RecordingWindow::mouseMoveEvent(GPoint const &position, unsigned short flags)
{
    record("mouseMoveEvent " + pointText(position) + " " + std::to_string(flags));
    return answerOf("mouseMoveEvent");
}

int RecordingWindow::mouseLDownEvent(unsigned short flags, GPoint const &position)
{
    record("mouseLDownEvent " + std::to_string(flags) + " " + pointText(position));
    return answerOf("mouseLDownEvent");
}

int RecordingWindow::mouseLUpEvent(unsigned short flags, GPoint const &position)
{
    record("mouseLUpEvent " + std::to_string(flags) + " " + pointText(position));
    return answerOf("mouseLUpEvent");
}

int RecordingWindow::mouseRDClickEvent(unsigned short flags, GPoint const &position)
{
    record("mouseRDClickEvent " + std::to_string(flags) + " " + pointText(position));
    return answerOf("mouseRDClickEvent");
}

int RecordingWindow::closeEvent(PEvent const &event)
{
    record("closeEvent");
    return PWindowObject::closeEvent(event);
}

int RecordingWindow::destroyEvent(PEvent const &event)
{
    record("destroyEvent");
    return PWindowObject::destroyEvent(event);
}

int RecordingWindow::canClose()
{
    record("canClose");
    const int refuse = answerOf("refuseClose");
    return refuse ? 0 : PWindowObject::canClose();
}

void RecordingWindow::shutDownWindow()
{
    record("shutDownWindow");
    PWindowObject::shutDownWindow();
}

int RecordingWindow::onChildCommand(unsigned int notification)
{
    record("onChildCommand " + std::to_string(notification));
    return answerOf("onChildCommand");
}

int RecordingWindow::vKeyToItem(unsigned int key, unsigned int caret)
{
    record("vKeyToItem " + std::to_string(key) + " " + std::to_string(caret));
    return 77;
}

void registerTestClass(TestApplication &app)
{
    EventLog unused;
    RecordingWindow probe(nullptr, &app, unused, "probe");
    probe.registerWindow();
}

void pumpMessages()
{
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}
