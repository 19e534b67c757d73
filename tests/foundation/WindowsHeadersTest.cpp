// The library's header read with <windows.h> and <cmath> before it and the platform's
// min and max macros in force. mingw's <windows.h> leaves those macros out of C++ while
// the platform SDK's defines them, so they are defined here as that header does.
#include <gtest/gtest.h>

#include <windows.h>
#include <cmath>

#ifndef min
#define min(a, b) (((a) < (b)) ? (a) : (b))
#endif
#ifndef max
#define max(a, b) (((a) > (b)) ? (a) : (b))
#endif

#include "TeskWin.h"

#include <type_traits>

namespace {

static_assert(std::is_same<decltype(tesk::round(1.0)), int>::value, "the library's round gives an int");
static_assert(std::is_same<decltype(::round(1.0)), double>::value, "the C library's round is untouched");

TEST(PNumerics, LivesBesideWindowsAndCmath)
{
    EXPECT_EQ(min(3, 4), 3); // the macro
    EXPECT_EQ(max(3, 4), 4);
    EXPECT_EQ((min)(3, 4), 3); // the library's, found at global scope past the macro
    EXPECT_EQ((max)(2.5, -1.0), 2.5);
    EXPECT_EQ((max)(static_cast<unsigned short>(1), static_cast<unsigned short>(65535)), 65535);
    EXPECT_EQ(::round(-2.5), -3.0);
    EXPECT_EQ(tesk::round(-2.5), -3);
    EXPECT_EQ(std::round(0.5), 1.0);
    EXPECT_EQ(static_cast<int>(round(2.5)), tesk::round(2.5)) << "both take halves away from zero";
    EXPECT_TRUE(IS_ZERO(0.0, 1e-9));
}

} // namespace
