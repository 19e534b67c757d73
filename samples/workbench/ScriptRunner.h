// ScriptRunner.h - runs a script of workbench commands, one step whenever the program is
// idle, and leaves a screenshot of the frame after each step and a timed log.
//
//   ScriptRunner  reads the script, runs its commands through the frame, logs each one with
//                 the time it took, and closes the frame at the end
//
// The commands, one a line; '#' starts a comment:
//   scene <width> <height> [seed]    a new window with a synthetic landscape
//   open <file>                      a new window with the picture in the file
//   save <file>                      the active picture, in the format the extension names
//   op <name>                        an image operation (Operations.cpp) on the active picture
//   duplicate | close                a copy of the active picture in a new window | closes it
//   activate <n>                     the n-th picture window, from 1
//   tile | cascade                   arranges the picture windows
//   zoom <percent> | scroll <x> <y>  the active window's zoom | its view, in picture pixels
//   select <x0> <y0> <x1> <y1>       a rubber-band selection | crop: cuts the picture to it
//   drag <x0> <y0> <x1> <y1>         the same with the mouse: its messages are queued
//   outlines | screen | clear        traced outlines | a line screen | neither, over the picture
//   quit                             closes the frame; the end of the script does too
// A command after "!" is meant to fail, to show how the failure reaches the user.
#pragma once

#include <TeskWin.h>

#include <string>
#include <vector>

class RunLog;
class Workbench;

class ScriptRunner {
public:
    ScriptRunner(Workbench &bench, RunLog &log);

    // False, with the reason in the log, when the script cannot be read.
    bool load(PString const &path);
    // Screenshots the step before once the frame has repainted, or runs the next step.
    void onIdle();
    bool failed() const { return failures != 0; }

private:
    // The result of one command: false when it failed or was not understood.
    bool run(std::vector<std::string> const &words);
    void finish();

    Workbench &bench;
    RunLog &log;
    std::vector<std::string> lines;
    size_t nextLine = 0;
    int step = 0;
    // Idle steps still to wait before the screenshot of the last command.
    int settling = 0;
    std::string shotName;
    int failures = 0;
    bool finished = false;
};
