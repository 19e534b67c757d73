#include <gtest/gtest.h>

#include "TeskWin.h"
#include "foundation/ScratchFiles.h"

#include <cstring>

namespace {

TEST(PFile, WritesReadsAndSeeks)
{
    ScratchFiles files;
    const std::string name = files.empty();
    {
        PFile file;
        ASSERT_TRUE(file.open(name.c_str(), PFile::writeAccess, PFile::shareNone, PFile::createAlways));
        char text[] = "0123456789";
        EXPECT_EQ(file.write(text, 10), 10);
    }
    EXPECT_EQ(ScratchFiles::contents(name), "0123456789");

    // The bitmap reader's call: read access, shared, an existing file.
    PFile file;
    ASSERT_TRUE(file.open(name.c_str(), static_cast<int>(0x80000000u), 3, 1));
    EXPECT_TRUE(file.isOpen());
    char buffer[32] = {};
    EXPECT_EQ(file.read(buffer, 4), 4);
    EXPECT_EQ(std::memcmp(buffer, "0123", 4), 0);
    EXPECT_EQ(file.seek(-2, PFile::fromCurrent), 2);
    // A short read at the end gives what there is, and then nothing.
    EXPECT_EQ(file.read(buffer, sizeof buffer), 8);
    EXPECT_EQ(std::memcmp(buffer, "23456789", 8), 0);
    EXPECT_EQ(file.read(buffer, sizeof buffer), 0);
    EXPECT_EQ(file.seek(-3, PFile::fromEnd), 7);
    EXPECT_EQ(file.read(buffer, 1), 1);
    EXPECT_EQ(buffer[0], '7');
    EXPECT_EQ(file.seek(0, PFile::fromEnd), 10);

    // Beyond the end is a place; there is nothing to read there.
    EXPECT_EQ(file.seek(100, PFile::fromStart), 100);
    EXPECT_EQ(file.read(buffer, 4), 0);
    // Before the start and unknown origins fail and leave the place.
    EXPECT_EQ(file.seek(-1, PFile::fromStart), -1);
    EXPECT_EQ(file.seek(-101, PFile::fromCurrent), -1);
    EXPECT_EQ(file.seek(0, 3), -1);
    EXPECT_EQ(file.seek(0, -1), -1);
    EXPECT_EQ(file.seek(0, PFile::fromCurrent), 100);

    EXPECT_EQ(file.read(nullptr, 4), 0);
    EXPECT_EQ(file.read(buffer, 0), 0);
    EXPECT_EQ(file.read(buffer, -5), 0);
}

TEST(PFile, RefusesWhatTheOpenDoesNotAllow)
{
    ScratchFiles files;
    const std::string name = files.withBytes(16);
    char buffer[16] = {'x'};

    PFile reader;
    ASSERT_TRUE(reader.open(name.c_str(), PFile::readAccess, PFile::shareRead, PFile::openExisting));
    EXPECT_EQ(reader.write(buffer, 4), 0);
    EXPECT_EQ(ScratchFiles::contents(name).size(), 16u);

    reader.close();

    PFile writer;
    ASSERT_TRUE(writer.open(name.c_str(), PFile::writeAccess, PFile::shareNone, PFile::openExisting));
    EXPECT_EQ(writer.read(buffer, 4), 0);
    EXPECT_EQ(writer.write(buffer, 4), 4);
}

TEST(PFile, SharingDecidesWhoElseMayOpen)
{
    ScratchFiles files;
    const std::string name = files.withBytes(8);
    {
        PFile exclusive;
        ASSERT_TRUE(exclusive.open(name.c_str(), PFile::readAccess, PFile::shareNone, PFile::openExisting));
        PFile second;
        EXPECT_FALSE(second.open(name.c_str(), PFile::readAccess, PFile::shareRead, PFile::openExisting));
        EXPECT_FALSE(second.isOpen());
    }
    // The destructor closed it.
    PFile shared;
    ASSERT_TRUE(shared.open(name.c_str(), PFile::readAccess, PFile::shareRead, PFile::openExisting));
    PFile second;
    EXPECT_TRUE(second.open(name.c_str(), PFile::readAccess, PFile::shareRead, PFile::openExisting));
    PFile writer;
    EXPECT_FALSE(writer.open(name.c_str(), PFile::writeAccess, PFile::shareRead, PFile::openExisting));
    shared.close();
    EXPECT_FALSE(shared.isOpen());
}

TEST(PFile, DispositionsCreateTruncateOrInsist)
{
    ScratchFiles files;
    const std::string missing = files.missing();
    PFile file;
    EXPECT_FALSE(file.open(missing.c_str(), PFile::readAccess, PFile::shareRead, PFile::openExisting));
    EXPECT_FALSE(fileExists(missing.c_str()));

    ASSERT_TRUE(file.open(missing.c_str(), PFile::writeAccess, PFile::shareNone, PFile::openAlways));
    EXPECT_EQ(file.seek(0, PFile::fromEnd), 0);
    char text[] = "abcdef";
    EXPECT_EQ(file.write(text, 6), 6);
    file.close();
    EXPECT_TRUE(fileExists(missing.c_str()));

    // openAlways keeps what is there.
    ASSERT_TRUE(file.open(missing.c_str(), PFile::readAccess, PFile::shareNone, PFile::openAlways));
    EXPECT_EQ(file.seek(0, PFile::fromEnd), 6);
    // Opening again closes the first file.
    EXPECT_FALSE(file.open(missing.c_str(), PFile::readAccess, PFile::shareNone, PFile::createNew));
    EXPECT_FALSE(file.isOpen());
    ASSERT_TRUE(file.open(missing.c_str(), PFile::writeAccess, PFile::shareNone, PFile::createAlways));
    EXPECT_EQ(file.seek(0, PFile::fromEnd), 0);
    file.close();
    EXPECT_EQ(ScratchFiles::contents(missing), "");

    EXPECT_FALSE(file.open(missing.c_str(), PFile::readAccess, PFile::shareRead, 0));
    EXPECT_FALSE(file.open(missing.c_str(), PFile::readAccess, PFile::shareRead, 5));
    EXPECT_FALSE(file.open("", PFile::readAccess, PFile::shareRead, PFile::openExisting));
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    EXPECT_FALSE(file.open(folder, PFile::readAccess, PFile::shareRead, PFile::openExisting));
}

TEST(PFile, ClosedFileDoesNothing)
{
    PFile file;
    EXPECT_FALSE(file.isOpen());
    char buffer[4] = {};
    EXPECT_EQ(file.read(buffer, 4), 0);
    EXPECT_EQ(file.write(buffer, 4), 0);
    EXPECT_EQ(file.seek(0, PFile::fromStart), -1);
    file.close();
    EXPECT_FALSE(file.isOpen());
}

} // namespace
