// PStringBench - PString's common operations against std::string, in nanoseconds per call.
//   wine foundation_string_bench.exe
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

volatile int theSink;

const char *const theShort = "picture.bmp";
const char *const theLong = "C:\\Documents\\Pictures\\holiday\\a long file name.tif";

void copyShortP(int n) { PString s(theShort); for (int i = 0; i < n; ++i) { PString c(s); theSink += c.length(); } }
void copyShortStd(int n) { std::string s(theShort); for (int i = 0; i < n; ++i) { std::string c(s); theSink += static_cast<int>(c.size()); } }
void copyLongP(int n) { PString s(theLong); for (int i = 0; i < n; ++i) { PString c(s); theSink += c.length(); } }
void copyLongStd(int n) { std::string s(theLong); for (int i = 0; i < n; ++i) { std::string c(s); theSink += static_cast<int>(c.size()); } }
void joinP(int n) { PString s(theLong); for (int i = 0; i < n; ++i) { PString j = s + ".bak"; theSink += j.length(); } }
void joinStd(int n) { std::string s(theLong); for (int i = 0; i < n; ++i) { std::string j = s + ".bak"; theSink += static_cast<int>(j.size()); } }
void compareP(int n) { PString s(theLong); for (int i = 0; i < n; ++i) theSink += s == theLong; }
void compareStd(int n) { std::string s(theLong); for (int i = 0; i < n; ++i) theSink += s == theLong; }
void upperP(int n) { PString s(theLong); for (int i = 0; i < n; ++i) { s.toUpper(); theSink += s[3]; } }

} // namespace

int main()
{
    const int calls = 2000000;
    std::printf("%-28s %10s %10s\n", "operation", "PString", "std");
    std::printf("%-28s %10.1f %10.1f\n", "copy, 11 characters", nanosecondsPerCall(calls, copyShortP),
                nanosecondsPerCall(calls, copyShortStd));
    std::printf("%-28s %10.1f %10.1f\n", "copy, 50 characters", nanosecondsPerCall(calls, copyLongP),
                nanosecondsPerCall(calls, copyLongStd));
    std::printf("%-28s %10.1f %10.1f\n", "join 50 + 4 characters", nanosecondsPerCall(calls, joinP),
                nanosecondsPerCall(calls, joinStd));
    std::printf("%-28s %10.1f %10.1f\n", "compare with text", nanosecondsPerCall(calls, compareP),
                nanosecondsPerCall(calls, compareStd));
    std::printf("%-28s %10.1f\n", "toUpper, 50 characters", nanosecondsPerCall(calls, upperP));
    return 0;
}
