#include "foundation/PTemporaryFileServices.h"

#include "foundation/FileUtilities.h"

#include <windows.h>

namespace {

PString &thePrefix()
{
    static PString prefix("tsk");
    return prefix;
}

} // namespace

PString PTemporaryFileServices::setDefaultPrefix(PString const &prefix)
{
    PString old(thePrefix());
    thePrefix() = prefix;
    return old;
}

int PTemporaryFileServices::reserveTempFile(PString &name)
{
    name.set(nullptr);
    // GetTempFileNameA needs room for its own 14 characters after the folder.
    char folder[MAX_PATH];
    const DWORD length = GetTempPathA(MAX_PATH, folder);
    if (length == 0 || length > MAX_PATH - 14)
        return 0;
    // Wine reports a name even when it could not create the file, so look for it.
    char file[MAX_PATH];
    if (!GetTempFileNameA(folder, thePrefix(), 0, file) || !fileExists(file))
        return 0;
    name.set(file);
    return 1;
}
