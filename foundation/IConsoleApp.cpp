#include "foundation/IConsoleApp.h"

namespace {

// The newest end of the list of live applications, linked through olderApp and newerApp.
IConsoleApp *theNewestApp = nullptr;

} // namespace

IConsoleApp::IConsoleApp()
{
    enrol();
}

IConsoleApp::IConsoleApp(IConsoleApp const &)
{
    enrol();
}

IConsoleApp &IConsoleApp::operator=(IConsoleApp const &)
{
    return *this;
}

IConsoleApp::~IConsoleApp()
{
    if (olderApp)
        olderApp->newerApp = newerApp;
    if (newerApp)
        newerApp->olderApp = olderApp;
    else
        theNewestApp = olderApp;
}

void IConsoleApp::enrol()
{
    olderApp = theNewestApp;
    newerApp = nullptr;
    if (theNewestApp)
        theNewestApp->newerApp = this;
    theNewestApp = this;
}

IConsoleApp::operator HINSTANCE() const
{
    return getInstance();
}

IConsoleApp *getConsoleApp()
{
    return theNewestApp;
}
