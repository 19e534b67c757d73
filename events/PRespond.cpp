#include "events/PRespond.h"

int PRespond::dropEvent(HDROP, int)
{
    return 0;
}

int PRespond::processChildEvent(PEvent const &, LRESULT *)
{
    return 0;
}

int PRespond::processCommandEvent(PEvent const &)
{
    return 0;
}

int PRespond::processNotificationEvent(PEvent const &)
{
    return 0;
}

int PRespond::processEvent(PEvent const &)
{
    return 0;
}

int PRespond::paintEvent(GContext &context, GRect &)
{
    return paintEvent(context);
}

int PRespond::paintEvent(GContext &)
{
    return 0;
}

int PRespond::timerEvent()
{
    return 0;
}

int PRespond::resizeEvent(GPoint const &)
{
    return 0;
}

int PRespond::moveEvent(GPoint const &)
{
    return 0;
}

int PRespond::hScrollEvent(unsigned int, int)
{
    return 0;
}

int PRespond::vScrollEvent(unsigned int, int)
{
    return 0;
}

int PRespond::scrollEvent(PScrollEvent const &)
{
    return 0;
}

int PRespond::mouseEvent(PMouseEvent const &)
{
    return 0;
}

int PRespond::notifyEvent(PNotifyEvent const &)
{
    return 0;
}

int PRespond::commandEvent(PCommandEvent const &)
{
    return 0;
}

int PRespond::mouseMoveEvent(GPoint const &, unsigned short)
{
    return 0;
}

int PRespond::mouseLUpEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseMUpEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseRUpEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseLDownEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseMDownEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseRDownEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseLDClickEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseMDClickEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::mouseRDClickEvent(unsigned short, GPoint const &)
{
    return 0;
}

int PRespond::closeEvent(PEvent const &)
{
    return 0;
}

int PRespond::destroyEvent(PEvent const &)
{
    return 0;
}

int PRespond::mdiActivate()
{
    return 0;
}

int PRespond::mdiDeactivate()
{
    return 0;
}
