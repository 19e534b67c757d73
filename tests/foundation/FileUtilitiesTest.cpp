#include <gtest/gtest.h>

#include "TeskWin.h"
#include "foundation/ScratchFiles.h"

#include <string>

namespace {

std::string tempFolder()
{
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    return folder;
}

TEST(PTemporaryFileServices, ReservesUniqueFilesUnderThePrefix)
{
    PString before = PTemporaryFileServices::setDefaultPrefix(PString("PPic"));
    PString first;
    PString second;
    ASSERT_TRUE(PTemporaryFileServices::reserveTempFile(first));
    ASSERT_TRUE(PTemporaryFileServices::reserveTempFile(second));
    EXPECT_TRUE(PTemporaryFileServices::setDefaultPrefix(before) == "PPic");

    EXPECT_TRUE(fileExists(first));
    EXPECT_TRUE(first != second);
    const std::string folder = tempFolder();
    const std::string name(static_cast<char const *>(first));
    ASSERT_GT(name.size(), folder.size());
    EXPECT_EQ(name.substr(0, folder.size()), folder);
    EXPECT_EQ(name.substr(folder.size(), 3), "PPi");
    EXPECT_EQ(ScratchFiles::contents(name), "");
    DeleteFileA(first);
    DeleteFileA(second);

    // A prefix that leads into a folder that does not exist cannot give a file.
    PTemporaryFileServices::setDefaultPrefix(PString("~q\\"));
    PString failed("old text");
    EXPECT_FALSE(PTemporaryFileServices::reserveTempFile(failed));
    EXPECT_TRUE(failed.isEmpty());
    PTemporaryFileServices::setDefaultPrefix(before);
}

TEST(FileUtilities, ExistsOnlyForFiles)
{
    ScratchFiles files;
    EXPECT_TRUE(fileExists(files.empty().c_str()));
    EXPECT_FALSE(fileExists(files.missing().c_str()));
    EXPECT_FALSE(fileExists(tempFolder().c_str()));
    EXPECT_FALSE(fileExists(""));
    EXPECT_FALSE(fileExists(nullptr));
}

TEST(FileUtilities, CopiesAndReplacesOnlyWhenAsked)
{
    ScratchFiles files;
    const std::string source = files.withBytes(5000);
    const std::string target = files.missing();
    ASSERT_TRUE(fileCopy(source.c_str(), target.c_str(), 1));
    EXPECT_EQ(ScratchFiles::contents(target), ScratchFiles::contents(source));

    const std::string other = files.withBytes(3);
    EXPECT_FALSE(fileCopy(other.c_str(), target.c_str(), 0));
    EXPECT_EQ(ScratchFiles::contents(target).size(), 5000u);
    EXPECT_TRUE(fileCopy(other.c_str(), target.c_str(), 1));
    EXPECT_EQ(ScratchFiles::contents(target).size(), 3u);

    // Onto itself: refused, and the file stays whole.
    EXPECT_FALSE(fileCopy(source.c_str(), source.c_str(), 1));
    EXPECT_EQ(ScratchFiles::contents(source).size(), 5000u);

    EXPECT_FALSE(fileCopy(files.missing().c_str(), target.c_str(), 1));
    EXPECT_EQ(ScratchFiles::contents(target).size(), 3u);
    EXPECT_FALSE(fileCopy(nullptr, target.c_str(), 1));
    EXPECT_FALSE(fileCopy(source.c_str(), nullptr, 1));
}

} // namespace
