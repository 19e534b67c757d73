#include "foundation/PFile.h"

#include <windows.h>

#include <climits>

namespace {

// The platform's disposition for each of open's own numbers, or 0 for none.
DWORD platformDisposition(int disposition)
{
    switch (disposition) {
    case PFile::openExisting: return OPEN_EXISTING;
    case PFile::createAlways: return CREATE_ALWAYS;
    case PFile::openAlways: return OPEN_ALWAYS;
    case PFile::createNew: return CREATE_NEW;
    default: return 0;
    }
}

} // namespace

PFile::PFile() : handle(nullptr)
{
}

PFile::~PFile()
{
    close();
}

int PFile::open(PString const &name, int access, int sharing, int disposition)
{
    close();
    const DWORD platform = platformDisposition(disposition);
    if (!platform)
        return 0;
    HANDLE opened = CreateFileA(name, static_cast<DWORD>(access), static_cast<DWORD>(sharing),
                                nullptr, platform, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE)
        return 0;
    handle = opened;
    return 1;
}

void PFile::close()
{
    if (!handle)
        return;
    CloseHandle(handle);
    handle = nullptr;
}

int PFile::isOpen() const
{
    return handle != nullptr;
}

long PFile::read(void *buffer, long size) const
{
    DWORD done = 0;
    if (!handle || !buffer || size <= 0 ||
        !ReadFile(handle, buffer, static_cast<DWORD>(size), &done, nullptr))
        return 0;
    return static_cast<long>(done);
}

long PFile::write(void *buffer, long size)
{
    DWORD done = 0;
    if (!handle || !buffer || size <= 0 ||
        !WriteFile(handle, buffer, static_cast<DWORD>(size), &done, nullptr))
        return 0;
    return static_cast<long>(done);
}

// The 64-bit form of the call, so that a place past 2 GiB - 1 shows instead of wrapping.
long PFile::seek(long offset, int origin)
{
    if (!handle || origin < fromStart || origin > fromEnd)
        return -1;
    LONG high = offset < 0 ? -1 : 0;
    const DWORD low = SetFilePointer(handle, offset, &high, static_cast<DWORD>(origin));
    if (high != 0 || low > static_cast<DWORD>(LONG_MAX))
        return -1;
    return static_cast<long>(low);
}
