#include "foundation/PHHwnd.h"

#include <cstdint>
#include <ostream>
#include <string>

PHHwnd::PHHwnd() : handle(nullptr) {}

PHHwnd::PHHwnd(HWND handle) : handle(handle) {}

PHHwnd &PHHwnd::operator=(HWND handle)
{
    this->handle = handle;
    return *this;
}

PHHwnd::operator HWND() const
{
    return handle;
}

int PHHwnd::hash() const
{
    return static_cast<int>(reinterpret_cast<std::intptr_t>(handle));
}

bool PHHwnd::operator==(PHHwnd const &other) const
{
    return handle == other.handle;
}

bool PHHwnd::operator!=(PHHwnd const &other) const
{
    return handle != other.handle;
}

void PHHwnd::printOn(std::ostream &stream) const
{
    // Formatted here and written as plain characters: the stream belongs to the caller's
    // runtime, whose locale facets this module's copy of the runtime must not use.
    const std::string text = std::to_string(reinterpret_cast<std::uintptr_t>(handle));
    stream.write(text.data(), static_cast<std::streamsize>(text.size()));
}
