#include "foundation/FileUtilities.h"

#include <windows.h>

int fileCopy(char const *from, char const *to, int flag)
{
    if (!from || !to)
        return 0;
    return CopyFileA(from, to, flag ? FALSE : TRUE) != 0;
}

int fileExists(char const *name)
{
    if (!name)
        return 0;
    const DWORD attributes = GetFileAttributesA(name);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}
