// RunLog.cpp - the log file.
#include "RunLog.h"

#include <cstdarg>
#include <cstdio>

RunLog::RunLog() : start(std::chrono::steady_clock::now()) {}

bool RunLog::open(PString const &path)
{
    return file.open(path, PFile::writeAccess, PFile::shareRead, PFile::createAlways) != 0;
}

double RunLog::elapsed() const
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void RunLog::line(char const *format, ...)
{
    char text[600];
    const int stamp = std::snprintf(text, sizeof text, "%9.1f ms  ", elapsed());
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text + stamp, sizeof text - stamp - 2, format, arguments);
    va_end(arguments);
    PString line(text);
    line = line + "\r\n";
    if (file.isOpen())
        file.write(static_cast<char *>(line), line.length());
}
