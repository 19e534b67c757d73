#include "foundation/PRefCount.h"

#include <windows.h>

namespace {

// Constant-initialised, so it is ready before any static object of the library is built.
SRWLOCK refCountLock = SRWLOCK_INIT;

} // namespace

void lockRefCount() { AcquireSRWLockExclusive(&refCountLock); }

void unlockRefCount() { ReleaseSRWLockExclusive(&refCountLock); }
