#include "foundation/PStream.h"

namespace {

// How the file is opened for each mode a stream accepts.
struct OpenMode {
    int mode;
    int access;
    int disposition;
};

const OpenMode theOpenModes[] = {
    {std::ios_base::in, PFile::readAccess, PFile::openExisting},
    {std::ios_base::out, PFile::writeAccess, PFile::createAlways},
    {std::ios_base::out | std::ios_base::trunc, PFile::writeAccess, PFile::createAlways},
    {std::ios_base::in | std::ios_base::out, PFile::readAccess | PFile::writeAccess, PFile::openExisting},
    {std::ios_base::in | std::ios_base::out | std::ios_base::trunc, PFile::readAccess | PFile::writeAccess,
     PFile::createAlways},
};

// PFile's origin for a direction; an unknown direction gives one that PFile refuses.
int fileOrigin(std::ios_base::seekdir direction)
{
    if (direction == std::ios_base::beg)
        return PFile::fromStart;
    if (direction == std::ios_base::cur)
        return PFile::fromCurrent;
    if (direction == std::ios_base::end)
        return PFile::fromEnd;
    return -1;
}

} // namespace

PStream::~PStream() = default;

DefaultStream::DefaultStream(char const *name, int mode, int sharing) : failed(true), lastCount(0)
{
    if (!name)
        return;
    const int withoutBinary = mode & ~static_cast<int>(std::ios_base::binary);
    for (const OpenMode &known : theOpenModes) {
        if (known.mode == withoutBinary) {
            failed = !file.open(name, known.access, sharing, known.disposition);
            return;
        }
    }
}

DefaultStream::~DefaultStream() = default;

PStream &DefaultStream::read(unsigned char *buffer, int size)
{
    lastCount = 0;
    if (failed || size < 0 || (size > 0 && !buffer)) {
        failed = true;
        return *this;
    }
    if (size > 0)
        lastCount = static_cast<int>(file.read(buffer, size));
    failed = lastCount != size;
    return *this;
}

PStream &DefaultStream::seekg(long offset, std::ios_base::seekdir direction)
{
    failed = file.seek(offset, fileOrigin(direction)) < 0;
    return *this;
}

long DefaultStream::tellg()
{
    return failed ? -1 : file.seek(0, PFile::fromCurrent);
}

int DefaultStream::good() const
{
    return !failed;
}

void DefaultStream::close()
{
    file.close();
    failed = true;
}

// The platform only reads the buffer; PFile's signature just does not say so.
PStream &DefaultStream::write(unsigned char const *buffer, int size)
{
    if (failed || size < 0 || (size > 0 && !buffer)) {
        failed = true;
        return *this;
    }
    if (size > 0)
        failed = file.write(const_cast<unsigned char *>(buffer), size) != size;
    return *this;
}

int DefaultStream::gcount() const
{
    return lastCount;
}
