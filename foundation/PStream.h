// PStream.h - byte streams.
//
//   PStream         an abstract stream of raw bytes with a state and a place
//   DefaultStream   a PStream on a named file
#pragma once

#include "foundation/PFile.h"
#include "foundation/TeskWinExport.h"

#include <ios>

// The directions of seekg are those of the standard streams: std::ios_base::beg, cur, end.
//
// State: good() stays non-zero until an operation fails: a read or write that moves fewer
// bytes than asked, a seek to an impossible place, any use of a closed stream. A failed
// stream moves no bytes until a seekg succeeds, which makes it good again (so a reader can
// rewind after running into the end).
class TESKWIN_API PStream {
public:
    virtual ~PStream();

    virtual PStream &read(unsigned char *buffer, int size) = 0;
    virtual PStream &seekg(long offset, std::ios_base::seekdir direction) = 0;
    // The place, or -1 when the stream has failed.
    virtual long tellg() = 0;
    virtual int good() const = 0;
    virtual void close() = 0;
    virtual PStream &write(unsigned char const *buffer, int size) = 0;
    // The number of bytes that the last read delivered.
    virtual int gcount() const = 0;
};

// The mode is a combination of std::ios_base flags:
//   in                 read an existing file
//   out, out | trunc   write a new or emptied file
//   in | out           read and write an existing file
//   in | out | trunc   read and write a new or emptied file
//   binary             allowed and without effect: bytes are never translated
// Any other combination (app, ate) leaves the stream failed. sharing is PFile's.
class TESKWIN_API DefaultStream : public PStream {
public:
    DefaultStream(char const *name, int mode, int sharing);
    DefaultStream(DefaultStream const &) = delete;
    DefaultStream &operator=(DefaultStream const &) = delete;
    ~DefaultStream() override;

    PStream &read(unsigned char *buffer, int size) override;
    PStream &seekg(long offset, std::ios_base::seekdir direction) override;
    long tellg() override;
    int good() const override;
    void close() override;
    PStream &write(unsigned char const *buffer, int size) override;
    int gcount() const override;

private:
    PFile file;
    bool failed;
    int lastCount;
};
