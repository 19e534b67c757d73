// PRefCount.h - the counter shared by copies of one platform handle, and its lock.
//
//   PRefCount                      a count of holders and the object they share
//   lockRefCount, unlockRefCount   enter and leave the one process-wide lock
//   PRefCountLock                  holds that lock for a scope
//
// Every read or change of a counter happens under the lock: take it, swap in the new
// counter and increment it, decrement the old one, release the lock, and only then,
// if the old count fell below 1, delete the held object and the counter.
// The lock is not re-entrant: never take it twice on one thread.
#pragma once

#include "foundation/TeskWinExport.h"

class TESKWIN_API PRefCount {
public:
    // A count of 1 for `object`, which the counter never frees.
    explicit PRefCount(void *object) : count(1), object(object) {}

    void *pointer() const { return object; }
    PRefCount &operator++() { ++count; return *this; }
    // The new count; a count already at 0 stays there.
    unsigned long decrement() { return count == 0 ? 0 : --count; }

private:
    unsigned long count;
    void *object;
};

TESKWIN_API void lockRefCount();
TESKWIN_API void unlockRefCount();

// Holds the reference-count lock from construction to destruction.
class PRefCountLock {
public:
    PRefCountLock() { lockRefCount(); }
    ~PRefCountLock() { unlockRefCount(); }
    PRefCountLock(PRefCountLock const &) = delete;
    PRefCountLock &operator=(PRefCountLock const &) = delete;
};
