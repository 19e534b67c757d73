#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/TestApplication.h"

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <type_traits>

namespace {

// The table position of a virtual member, read from the pointer-to-member, which the
// compiler's ABI stores as 1 plus the entry's byte offset in the table.
template <typename Member>
std::ptrdiff_t slotOf(Member member)
{
    struct {
        std::ptrdiff_t pointer;
        std::ptrdiff_t adjustment;
    } stored;
    static_assert(sizeof(Member) == sizeof stored, "pointer-to-member layout");
    std::memcpy(&stored, &member, sizeof stored);
    return (stored.pointer - 1) / static_cast<std::ptrdiff_t>(sizeof(void *));
}

TEST(IConsoleApp, TableHoldsTheNineteenOperationsInOrder)
{
    EXPECT_FALSE(std::has_virtual_destructor<IConsoleApp>::value);
    const std::ptrdiff_t slots[] = {slotOf(&IConsoleApp::getInstance), slotOf(&IConsoleApp::getResourceModule),
                                    slotOf(&IConsoleApp::getCommandLine), slotOf(&IConsoleApp::getShowCommand),
                                    slotOf(&IConsoleApp::getProgramPath), slotOf(&IConsoleApp::getAppName),
                                    slotOf(&IConsoleApp::getCompanyName), slotOf(&IConsoleApp::getVersion),
                                    slotOf(&IConsoleApp::getHelpFile), slotOf(&IConsoleApp::getWorkingFolder),
                                    slotOf(&IConsoleApp::getTempPrefix), slotOf(&IConsoleApp::getLanguage),
                                    slotOf(&IConsoleApp::getCodePage), slotOf(&IConsoleApp::isInteractive),
                                    slotOf(&IConsoleApp::initInstance), slotOf(&IConsoleApp::run),
                                    slotOf(&IConsoleApp::exitInstance), slotOf(&IConsoleApp::getStringId),
                                    slotOf(&IConsoleApp::setExitCode)};
    // In declaration order, one slot each.
    for (std::ptrdiff_t i = 0; i < 19; ++i)
        EXPECT_EQ(slots[i], i);
}

TEST(IConsoleApp, NewestLiveApplicationIsTheProcesssOne)
{
    ASSERT_EQ(getConsoleApp(), nullptr);
    const HINSTANCE program = GetModuleHandleA(nullptr);
    {
        TestApplication first(program);
        EXPECT_EQ(getConsoleApp(), &first);
        EXPECT_EQ(static_cast<HINSTANCE>(first), program);
        EXPECT_TRUE(getConsoleApp()->getAppName() == "Test application");
        {
            auto *second = new TestApplication(nullptr);
            EXPECT_EQ(getConsoleApp(), second);
            TestApplication copy(first);
            EXPECT_EQ(getConsoleApp(), &copy);
            EXPECT_EQ(static_cast<HINSTANCE>(copy), program);
            // Assignment moves no registration.
            *second = first;
            EXPECT_EQ(getConsoleApp(), &copy);
            // Leaving from the middle keeps the order of the others.
            delete second;
            EXPECT_EQ(getConsoleApp(), &copy);
        }
        EXPECT_EQ(getConsoleApp(), &first);
    }
    EXPECT_EQ(getConsoleApp(), nullptr);
}

TEST(IErrorMessage, LogKeepsCopiesForReadingBack)
{
    clearErrorLog();
    EXPECT_EQ(getErrorLogCount(), 0);
    EXPECT_EQ(getErrorLogEntry(0), nullptr);
    {
        IErrorMessage warning(PString("first"), warningErrorMessage);
        LogErrorMessage(warning);
    }
    // A fatal entry is recorded like any other; the process goes on.
    LogErrorMessage(IErrorMessage(PString("second"), fatalErrorMessage));
    ASSERT_EQ(getErrorLogCount(), 2);
    ASSERT_NE(getErrorLogEntry(0), nullptr);
    EXPECT_TRUE(getErrorLogEntry(0)->getText() == "first");
    EXPECT_EQ(getErrorLogEntry(0)->getType(), warningErrorMessage);
    EXPECT_TRUE(getErrorLogEntry(1)->getText() == "second");
    EXPECT_EQ(getErrorLogEntry(1)->getType(), fatalErrorMessage);
    EXPECT_EQ(getErrorLogEntry(2), nullptr);
    EXPECT_EQ(getErrorLogEntry(-1), nullptr);
    clearErrorLog();
    EXPECT_EQ(getErrorLogCount(), 0);
    EXPECT_EQ(getErrorLogEntry(0), nullptr);
}

TEST(IErrorMessage, FullLogDropsTheOldestEntries)
{
    clearErrorLog();
    char text[16];
    for (int i = 0; i < errorLogCapacity + 3; ++i) {
        std::snprintf(text, sizeof text, "entry %d", i);
        LogErrorMessage(IErrorMessage(PString(text), warningErrorMessage));
    }
    ASSERT_EQ(getErrorLogCount(), static_cast<int>(errorLogCapacity));
    EXPECT_TRUE(getErrorLogEntry(0)->getText() == "entry 3");
    std::snprintf(text, sizeof text, "entry %d", errorLogCapacity + 2);
    EXPECT_TRUE(getErrorLogEntry(errorLogCapacity - 1)->getText() == text);
    EXPECT_EQ(getErrorLogEntry(errorLogCapacity), nullptr);
    clearErrorLog();
}

} // namespace
