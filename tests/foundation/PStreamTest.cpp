#include <gtest/gtest.h>

#include "TeskWin.h"
#include "foundation/ScratchFiles.h"

#include <cstring>
#include <ios>

namespace {

const int readBinary = std::ios_base::in | std::ios_base::binary;
const int writeBinary = std::ios_base::out | std::ios_base::binary;

// A length-prefixed block, as pictures travel in streams.
void writeBlock(PStream &stream, unsigned char const *bytes, int size)
{
    unsigned char length[4] = {static_cast<unsigned char>(size), static_cast<unsigned char>(size >> 8),
                               static_cast<unsigned char>(size >> 16), static_cast<unsigned char>(size >> 24)};
    stream.write(length, 4).write(bytes, size);
}

TEST(DefaultStream, WritesThenReadsBackThroughTheBase)
{
    ScratchFiles files;
    const std::string name = files.missing();
    const unsigned char payload[] = {1, 2, 3, 0, 0xFF, 7};
    {
        DefaultStream out(name.c_str(), writeBinary, PFile::shareNone);
        ASSERT_TRUE(out.good());
        writeBlock(out, payload, 6);
        EXPECT_TRUE(out.good());
        EXPECT_EQ(out.tellg(), 10);
    }
    DefaultStream in(name.c_str(), readBinary, PFile::shareRead);
    ASSERT_TRUE(in.good());
    PStream &stream = in;
    // The size by seeking to the end, as a whole-file reader does.
    EXPECT_EQ(stream.seekg(0, std::ios_base::end).tellg(), 10);
    EXPECT_TRUE(stream.seekg(0, std::ios_base::beg).good());
    unsigned char bytes[10] = {};
    EXPECT_TRUE(stream.read(bytes, 10).good());
    EXPECT_EQ(stream.gcount(), 10);
    EXPECT_EQ(bytes[0], 6);
    EXPECT_EQ(bytes[3], 0);
    EXPECT_EQ(std::memcmp(bytes + 4, payload, 6), 0);
    EXPECT_EQ(stream.seekg(-2, std::ios_base::cur).tellg(), 8);
    EXPECT_TRUE(stream.read(bytes, 0).good());
    EXPECT_EQ(stream.gcount(), 0);
    stream.close();
    EXPECT_FALSE(stream.good());
    EXPECT_EQ(stream.tellg(), -1);
    EXPECT_FALSE(stream.seekg(0, std::ios_base::beg).good());
}

TEST(DefaultStream, FailureSticksUntilASeekSucceeds)
{
    ScratchFiles files;
    const std::string name = files.withBytes(5);
    DefaultStream in(name.c_str(), readBinary, PFile::shareRead);
    unsigned char bytes[8] = {};
    // A short read delivers what there is and fails the stream.
    EXPECT_FALSE(in.read(bytes, 8).good());
    EXPECT_EQ(in.gcount(), 5);
    EXPECT_EQ(bytes[4], 4);
    EXPECT_EQ(in.tellg(), -1);
    // Failed: nothing moves any more.
    std::memset(bytes, 0xEE, sizeof bytes);
    EXPECT_FALSE(in.seekg(-9, std::ios_base::end).read(bytes, 1).good());
    EXPECT_EQ(in.gcount(), 0);
    EXPECT_EQ(bytes[0], 0xEE);
    // Rewinding makes it good again.
    EXPECT_TRUE(in.seekg(1, std::ios_base::beg).good());
    EXPECT_TRUE(in.read(bytes, 2).good());
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[1], 2);
    // Beyond the end is a place, but reading there fails.
    EXPECT_TRUE(in.seekg(50, std::ios_base::beg).good());
    EXPECT_EQ(in.tellg(), 50);
    EXPECT_FALSE(in.read(bytes, 1).good());
    EXPECT_EQ(in.gcount(), 0);
    // Bad arguments fail too.
    in.seekg(0, std::ios_base::beg);
    EXPECT_FALSE(in.read(nullptr, 1).good());
    in.seekg(0, std::ios_base::beg);
    EXPECT_FALSE(in.read(bytes, -1).good());
    // A read-only stream refuses writing.
    in.seekg(0, std::ios_base::beg);
    EXPECT_FALSE(in.write(bytes, 2).good());
    EXPECT_EQ(ScratchFiles::contents(name).size(), 5u);
}

TEST(DefaultStream, OpenModesAndMissingFiles)
{
    ScratchFiles files;
    unsigned char bytes[4] = {};

    DefaultStream missing(files.missing().c_str(), readBinary, PFile::shareRead);
    EXPECT_FALSE(missing.good());
    EXPECT_FALSE(missing.read(bytes, 1).good());
    EXPECT_EQ(missing.gcount(), 0);
    EXPECT_EQ(missing.tellg(), -1);

    DefaultStream unnamed(nullptr, readBinary, PFile::shareRead);
    EXPECT_FALSE(unnamed.good());
    const std::string existing = files.withBytes(4);
    EXPECT_FALSE(DefaultStream(existing.c_str(), std::ios_base::out | std::ios_base::app, 0).good());
    EXPECT_FALSE(DefaultStream(existing.c_str(), std::ios_base::in | std::ios_base::ate, 0).good());
    EXPECT_FALSE(DefaultStream(existing.c_str(), 0, 0).good());
    EXPECT_EQ(ScratchFiles::contents(existing).size(), 4u);

    // in | out keeps the file; writing and reading share one place.
    {
        DefaultStream both(existing.c_str(), std::ios_base::in | std::ios_base::out, PFile::shareNone);
        ASSERT_TRUE(both.good());
        const unsigned char patch[] = {'A', 'B'};
        both.seekg(1, std::ios_base::beg).write(patch, 2);
        EXPECT_TRUE(both.seekg(0, std::ios_base::beg).read(bytes, 4).good());
        EXPECT_EQ(std::memcmp(bytes, "\0AB\3", 4), 0);
    }
    // out empties it.
    EXPECT_TRUE(DefaultStream(existing.c_str(), std::ios_base::out, PFile::shareNone).good());
    EXPECT_EQ(ScratchFiles::contents(existing), "");
}

} // namespace
