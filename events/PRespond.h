// PRespond.h - the handlers through which an event reaches application code.
//
//   PRespond  30 virtual handlers; each returns non-zero to claim its event
#pragma once

#include "events/PEvent.h"
#include "foundation/GPoint.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

class GContext;
class GRect;
class PDispatch;

class TESKWIN_API PRespond {
    // Only the dispatch hands out dropped files.
    friend class PDispatch;

public:
    PRespond() = default;
    PRespond(PRespond const &) {}
    PRespond &operator=(PRespond const &) { return *this; }

private:
    // The order of the handlers is the order of the table and part of the design.
    virtual int dropEvent(HDROP drop, int fileCount);

public:
    // Leaves *result alone unless it claims the event.
    virtual int processChildEvent(PEvent const &event, LRESULT *result);
    virtual int processCommandEvent(PEvent const &event);
    virtual int processNotificationEvent(PEvent const &event);
    virtual int processEvent(PEvent const &event);
    // Drops the area and asks the one-argument form; the two-argument form stands first. Deliberate.
    virtual int paintEvent(GContext &context, GRect &area);
    virtual int paintEvent(GContext &context);
    virtual int timerEvent();
    virtual int resizeEvent(GPoint const &size);
    virtual int moveEvent(GPoint const &position);
    virtual int hScrollEvent(unsigned int code, int position);
    virtual int vScrollEvent(unsigned int code, int position);
    virtual int scrollEvent(PScrollEvent const &event);
    virtual int mouseEvent(PMouseEvent const &event);
    virtual int notifyEvent(PNotifyEvent const &event);
    virtual int commandEvent(PCommandEvent const &event);
    // Position first here, flags first in every button handler. Deliberate.
    virtual int mouseMoveEvent(GPoint const &position, unsigned short flags);
    virtual int mouseLUpEvent(unsigned short flags, GPoint const &position);
    virtual int mouseMUpEvent(unsigned short flags, GPoint const &position);
    virtual int mouseRUpEvent(unsigned short flags, GPoint const &position);
    virtual int mouseLDownEvent(unsigned short flags, GPoint const &position);
    virtual int mouseMDownEvent(unsigned short flags, GPoint const &position);
    virtual int mouseRDownEvent(unsigned short flags, GPoint const &position);
    virtual int mouseLDClickEvent(unsigned short flags, GPoint const &position);
    virtual int mouseMDClickEvent(unsigned short flags, GPoint const &position);
    virtual int mouseRDClickEvent(unsigned short flags, GPoint const &position);
    virtual int closeEvent(PEvent const &event);
    virtual int destroyEvent(PEvent const &event);
    virtual int mdiActivate();
    virtual int mdiDeactivate();

protected:
    // Not virtual, to keep the table as it is; nothing is deleted through this base.
    ~PRespond() = default;
};
