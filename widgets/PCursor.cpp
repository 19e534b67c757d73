#include "widgets/PCursor.h"

#include "events/PAppInterface.h"

#include <new>

namespace {

// The module that window classes of the application are registered under, or none.
HINSTANCE instanceOf(PAppInterface *app)
{
    IConsoleApp *console = app;
    return console->getInstance();
}

} // namespace

CursorHandle::~CursorHandle()
{
    if (owned && handle)
        DestroyCursor(handle);
}

PCursor::PCursor(cursorType type)
    : shared(new (std::nothrow) CursorHandle{LoadCursorA(nullptr, MAKEINTRESOURCEA(type & 0xFFFF)), 0})
{
}

PCursor::PCursor(PString const &name, PAppInterface *app)
    : shared(new (std::nothrow) CursorHandle{app ? LoadCursorA(instanceOf(app), name) : nullptr, 1})
{
}

PCursor::PCursor(PCursor const &other) = default;

PCursor &PCursor::operator=(PCursor const &other) = default;

PCursor::~PCursor() = default;

int PCursor::operator==(PCursor const &other) const
{
    return static_cast<HICON>(*this) == static_cast<HICON>(other);
}

int PCursor::operator!=(PCursor const &other) const
{
    return !(*this == other);
}

PCursor::operator HICON() const
{
    return shared.handle();
}

IconHandle::~IconHandle()
{
    if (owned && handle)
        DestroyIcon(handle);
}

PIcon::PIcon() : shared(new (std::nothrow) IconHandle{LoadIconA(nullptr, MAKEINTRESOURCEA(0x7F00)), 0})
{
}

PIcon::PIcon(PString const &name, PAppInterface *app)
    : shared(new (std::nothrow) IconHandle{app ? LoadIconA(instanceOf(app), name) : nullptr, 1})
{
}

PIcon::PIcon(PIcon const &other) = default;

PIcon &PIcon::operator=(PIcon const &other) = default;

PIcon::~PIcon() = default;

PIcon::operator HICON() const
{
    return shared.handle();
}
