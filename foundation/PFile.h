// PFile.h - a file of the platform, read and written in bytes.
//
//   PFile   owns one file handle; closes it when it goes
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

// Positions are 32-bit: files up to 2 GiB - 1 bytes.
class TESKWIN_API PFile {
public:
    // open's access: the platform's access mask (GENERIC_READ, GENERIC_WRITE), passed on as is.
    static constexpr int readAccess = static_cast<int>(0x80000000u);
    static constexpr int writeAccess = 0x40000000;
    // open's sharing: what others may do while the file is open (FILE_SHARE_...), passed on as is.
    static constexpr int shareNone = 0;
    static constexpr int shareRead = 1;
    static constexpr int shareWrite = 2;
    // open's disposition, this module's own numbers (not the platform's).
    static constexpr int openExisting = 1; // the file must exist
    static constexpr int createAlways = 2; // a new, empty file, replacing any old one
    static constexpr int openAlways = 3;   // the file as it is, made empty if missing
    static constexpr int createNew = 4;    // a new, empty file; fails if one exists
    // seek's origins.
    static constexpr int fromStart = 0;
    static constexpr int fromCurrent = 1;
    static constexpr int fromEnd = 2;

    PFile();
    PFile(PFile const &) = delete;
    PFile &operator=(PFile const &) = delete;
    ~PFile();

    // Closes any file open before; non-zero on success. Any other disposition fails.
    int open(PString const &name, int access, int sharing, int disposition);
    void close();
    int isOpen() const;

    // The number of bytes read: fewer than size at the end of the file, 0 on failure.
    long read(void *buffer, long size) const;
    // The number of bytes written; 0 when nothing could be, as on a file opened to read.
    long write(void *buffer, long size);
    // The new position, or -1 (position unchanged) on a closed file, a bad origin, or a
    // place before the start. A place beyond the end is allowed; reading there gives 0 bytes.
    // A place at or past 2 GiB also gives -1, and the file then stands there.
    long seek(long offset, int origin);

private:
    void *handle;
};
