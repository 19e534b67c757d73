// RunLog.h - the workbench's log: one line per event, with the time since the start.
//
//   RunLog  appends lines to a file as they come, so that a run that ends early keeps them
#pragma once

#include <TeskWin.h>

#include <chrono>

class RunLog {
public:
    RunLog();
    RunLog(RunLog const &) = delete;
    RunLog &operator=(RunLog const &) = delete;

    // Starts the file afresh; false when it cannot be written.
    bool open(PString const &path);
    bool isOpen() const { return file.isOpen() != 0; }
    // printf-style; the line is written with the milliseconds since the log was made.
    void line(char const *format, ...);
    // Milliseconds since the log was made.
    double elapsed() const;

private:
    PFile file;
    std::chrono::steady_clock::time_point start;
};
