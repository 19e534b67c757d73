// PTemporaryFileServices.h - unique temporary files.
//
//   PTemporaryFileServices   the process's temporary-name prefix and file reservation
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

// The prefix is process-wide and unlocked, like the windows: one thread uses it.
class TESKWIN_API PTemporaryFileServices {
public:
    PTemporaryFileServices() = delete;

    // Sets the prefix of later temporary names and gives the one before ("tsk" at first).
    // The platform uses its first three characters.
    static PString setDefaultPrefix(PString const &prefix);
    // Creates a new, empty file with a unique name in the user's temporary folder and puts
    // its full name in name; non-zero on success, and name empty on failure. The caller
    // deletes the file.
    static int reserveTempFile(PString &name);
};
