#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"

#include <cstring>

namespace {

TEST(PMemory, GlobalAllocZeroesAndReallocKeepsContents)
{
    auto *block = static_cast<unsigned char *>(PGlobalAlloc(16));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(block[i], 0) << i;
    std::memset(block, 0xAB, 16);
    block = static_cast<unsigned char *>(PGlobalReAlloc(block, 40));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(block[i], 0xAB) << i;
    block = static_cast<unsigned char *>(PLocalReAlloc(block, 3));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(block[2], 0xAB);
    // The families share one heap: a Global block may go back through Local.
    PLocalFree(block);
    PGlobalFree(nullptr);
}

TEST(PMemory, MemCpyCopiesWordsThenTail)
{
    unsigned char from[11];
    for (int i = 0; i < 11; ++i)
        from[i] = static_cast<unsigned char>(i + 1);
    unsigned char to[11];
    std::memset(to, 0xEE, sizeof to);
    EXPECT_EQ(PMemCpy(to, from, 7), to);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(to[i], i + 1) << i;
    for (int i = 7; i < 11; ++i)
        EXPECT_EQ(to[i], 0xEE) << i;

    std::memset(to, 0xEE, sizeof to);
    EXPECT_EQ(PMemCpy(to, from, 0), to);
    EXPECT_EQ(to[0], 0xEE);

    // Unaligned source and target, an exact multiple of four.
    std::memset(to, 0, sizeof to);
    PMemCpy(to + 1, from + 3, 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(to[1 + i], from[3 + i]) << i;
    EXPECT_EQ(to[9], 0);
}

// The test build places each block against an inaccessible page.
LONG WINAPI exitOnGuardFault(EXCEPTION_POINTERS *info)
{
    const EXCEPTION_RECORD *record = info->ExceptionRecord;
    const bool guardHit = record->ExceptionCode == EXCEPTION_ACCESS_VIOLATION;
    ExitProcess(guardHit ? 77 : 78);
    return EXCEPTION_CONTINUE_SEARCH;
}

void writeOnePast(unsigned char *block, unsigned int size)
{
    SetUnhandledExceptionFilter(exitOnGuardFault);
    volatile unsigned char *end = block + size;
    *end = 1;
    ExitProcess(0);
}

TEST(PMemory, GuardedBlocksFaultOnFirstByteOutside)
{
    ASSERT_TRUE(PMemoryIsGuarded()) << "the test suite runs on the guarded test build";
    auto *global = static_cast<unsigned char *>(PGlobalAlloc(13));
    auto *local = static_cast<unsigned char *>(PLocalAlloc(4096));
    ASSERT_NE(global, nullptr);
    ASSERT_NE(local, nullptr);
    // Every byte inside is usable...
    std::memset(global, 1, 13);
    std::memset(local, 1, 4096);
    // ...and the first one past the end faults at once.
    EXPECT_EXIT(writeOnePast(global, 13), testing::ExitedWithCode(77), "");
    EXPECT_EXIT(writeOnePast(local, 4096), testing::ExitedWithCode(77), "");
    PGlobalFree(global);
    PLocalFree(local);
}

} // namespace
