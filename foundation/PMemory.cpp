#include "foundation/PMemory.h"

#include <cstdlib>
#include <cstring>
#include <cstdint>

#ifdef TESKWIN_GUARDED_ALLOC
#include <windows.h>
#endif

namespace {

#ifdef TESKWIN_GUARDED_ALLOC
// Test builds: every block ends exactly at a PAGE_NOACCESS page, so that the first
// byte written or read past its end faults at once.
const std::size_t kPage = 4096;

void *guardedAlloc(std::size_t size)
{
    const std::size_t span = (size + kPage - 1) / kPage * kPage;
    if (span < size || span + kPage < span)
        return nullptr;
    auto *base = static_cast<unsigned char *>(
        VirtualAlloc(nullptr, span + kPage, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
    if (!base)
        return nullptr;
    DWORD old;
    VirtualProtect(base + span, kPage, PAGE_NOACCESS, &old);
    // VirtualAlloc's pages are zero: calloc semantics come for free.
    return base + span - size;
}

// The usable size is what lies between the block and its guard page.
std::size_t guardedSize(void *block)
{
    MEMORY_BASIC_INFORMATION info;
    VirtualQuery(block, &info, sizeof info);
    if (info.Protect == PAGE_NOACCESS)
        return 0;
    return static_cast<unsigned char *>(info.BaseAddress) + info.RegionSize -
           static_cast<unsigned char *>(block);
}

void guardedFree(void *block)
{
    if (!block)
        return;
    MEMORY_BASIC_INFORMATION info;
    VirtualQuery(block, &info, sizeof info);
    VirtualFree(info.AllocationBase, 0, MEM_RELEASE);
}

void *guardedReAlloc(void *block, std::size_t size)
{
    if (!block)
        return guardedAlloc(size);
    void *moved = guardedAlloc(size);
    if (!moved)
        return nullptr;
    const std::size_t old = guardedSize(block);
    std::memcpy(moved, block, old < size ? old : size);
    guardedFree(block);
    return moved;
}

void *heapAlloc(std::size_t size) { return guardedAlloc(size); }
void *heapZeroAlloc(std::size_t size) { return guardedAlloc(size); }
void *heapReAlloc(void *block, std::size_t size) { return guardedReAlloc(block, size); }
void heapFree(void *block) { guardedFree(block); }
#else
void *heapAlloc(std::size_t size) { return std::malloc(size); }
void *heapZeroAlloc(std::size_t size) { return std::calloc(size, 1); }
void *heapReAlloc(void *block, std::size_t size) { return std::realloc(block, size); }
void heapFree(void *block) { std::free(block); }
#endif

} // namespace

void *PLocalAlloc(unsigned int size) { return heapAlloc(size); }
void PLocalFree(void *block) { heapFree(block); }
void *PLocalReAlloc(void *block, unsigned int size) { return heapReAlloc(block, size); }

void *PGlobalAlloc(unsigned long size) { return heapZeroAlloc(size); }
void PGlobalFree(void *block) { heapFree(block); }
void *PGlobalReAlloc(void *block, unsigned long size) { return heapReAlloc(block, size); }

void *PMemCpy(void *to, void *const from, unsigned int size)
{
    auto *target = static_cast<unsigned char *>(to);
    auto *source = static_cast<const unsigned char *>(from);
    const unsigned int words = size / 4;
    for (unsigned int i = 0; i < words; ++i) {
        std::uint32_t word;
        std::memcpy(&word, source + 4 * i, 4);
        std::memcpy(target + 4 * i, &word, 4);
    }
    for (unsigned int i = words * 4; i < size; ++i)
        target[i] = source[i];
    return to;
}

bool PMemoryIsGuarded()
{
#ifdef TESKWIN_GUARDED_ALLOC
    return true;
#else
    return false;
#endif
}
