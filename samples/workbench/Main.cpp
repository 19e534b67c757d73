// Main.cpp - the workbench's start: the application, the frame, and the event loop.
//
//   workbench.exe [pictures...]                        the frame with those pictures open
//   workbench.exe --script <file> [--log <file>]       runs the script, then ends; the log
//                                                      goes to workbench.log unless named
// The exit code is 0, or 1 when the frame could not be made or a script step failed.
#include "PictureWindow.h"
#include "ScriptRunner.h"
#include "Workbench.h"
#include "WorkbenchApp.h"

#include <string>
#include <vector>

namespace {

// The command line's words; double quotes keep spaces inside one word.
std::vector<std::string> argumentsOf(char const *line)
{
    std::vector<std::string> words;
    std::string word;
    bool quoted = false, inWord = false;
    for (char const *c = line; *c; ++c) {
        if (*c == '"') {
            quoted = !quoted;
            inWord = true;
        } else if (*c == ' ' && !quoted) {
            if (inWord)
                words.push_back(word);
            word.clear();
            inWord = false;
        } else {
            word += *c;
            inWord = true;
        }
    }
    if (inWord)
        words.push_back(word);
    return words;
}

// Script runs put the frame at one place and size, so that their screenshots compare.
const int scriptFrameWidth = 1024;
const int scriptFrameHeight = 720;

} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int)
{
    WorkbenchApp app(instance);
    std::vector<std::string> pictures;
    std::string scriptPath, logPath = "workbench.log";
    const std::vector<std::string> arguments = argumentsOf(commandLine);
    for (size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--script" && i + 1 < arguments.size())
            scriptPath = arguments[++i];
        else if (arguments[i] == "--log" && i + 1 < arguments.size())
            logPath = arguments[++i];
        else
            pictures.push_back(arguments[i]);
    }

    RunLog &log = app.log();
    if (!scriptPath.empty() && !log.open(PString(logPath.c_str())))
        return 1;
    auto *frame = new Workbench(&app);
    ScriptRunner script(*frame, log);
    if (!scriptPath.empty()) {
        if (!script.load(PString(scriptPath.c_str())))
            return 1;
        app.setScript(&script);
        frame->setLocation(0, 0);
        frame->setSize(scriptFrameWidth, scriptFrameHeight);
    }
    setApplication(&app);
    app.setMainWindow(frame);
    app.loadAccelerators();
    if (!frame->registerWindow() || !frame->create()) {
        log.line("the frame could not be made");
        return 1;
    }
    for (std::string const &picture : pictures)
        frame->open(PString(picture.c_str()));
    // Returns once the frame has gone; the loop deletes it.
    frame->run();
    log.line("the event loop has ended");
    return script.failed() ? 1 : 0;
}
