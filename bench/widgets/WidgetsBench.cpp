// WidgetsBench - double-byte strings and shared handles, in nanoseconds per call.
//   wine widgets_bench.exe              (the code page of the locale, usually 1252)
//   LANG=ja_JP.UTF-8 wine widgets_bench.exe    (code page 932, with lead bytes)
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

volatile unsigned int theSink;

// 1000 characters: double-byte pairs and single bytes in turn, 1500 bytes.
PMultiString mixedText()
{
    std::string text;
    for (int i = 0; i < 500; ++i)
        text += "\x82\xA0z";
    return PMultiString(text.c_str());
}

void lengthOfText(int n)
{
    PMultiString text = mixedText();
    for (int i = 0; i < n; ++i)
        theSink += text.length();
}

void lastCharacter(int n)
{
    PMultiString text = mixedText();
    for (int i = 0; i < n; ++i)
        theSink += text[999];
}

void copyMenu(int n)
{
    PMenu menu;
    menu.create();
    for (int i = 0; i < n; ++i) {
        PMenu copy(menu);
        theSink += copy == menu;
    }
}

void copyCursor(int n)
{
    PCursor cursor(cursorArrow);
    for (int i = 0; i < n; ++i) {
        PCursor copy(cursor);
        theSink += copy == cursor;
    }
}

} // namespace

int main()
{
    std::printf("code page %u\n", GetACP());
    std::printf("PMultiString::length, 1500 bytes       %10.1f ns\n", nanosecondsPerCall(2000, lengthOfText));
    std::printf("PMultiString::operator[], last of 1000 %10.1f ns\n", nanosecondsPerCall(2000, lastCharacter));
    std::printf("PMenu copy and compare                 %10.1f ns\n", nanosecondsPerCall(200000, copyMenu));
    std::printf("PCursor copy and compare               %10.1f ns\n", nanosecondsPerCall(200000, copyCursor));
    return 0;
}
