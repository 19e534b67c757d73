#include "events/PAppInterface.h"

namespace {

PAppInterface *theApplication = nullptr;

} // namespace

HWND gLastWindow = nullptr;
PStatusBar *gStatusBar = nullptr;

PAppInterface::PAppInterface() : PError(noError)
{
}

PAppInterface::PAppInterface(PAppInterface const &other) = default;

PAppInterface &PAppInterface::operator=(PAppInterface const &other) = default;

PAppInterface *getApplication()
{
    return theApplication;
}

void setApplication(PAppInterface *application)
{
    theApplication = application;
}
