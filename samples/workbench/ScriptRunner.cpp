// ScriptRunner.cpp - the script's commands.
#include "ScriptRunner.h"

#include "Operations.h"
#include "PictureWindow.h"
#include "RunLog.h"
#include "Screenshot.h"
#include "Workbench.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace {

// The frame has repainted once the queue has run empty twice after a command: the first
// empty queue may still hold paints that the platform generates late.
const int idleStepsBeforeShot = 2;

std::vector<std::string> wordsOf(std::string const &line)
{
    std::vector<std::string> words;
    std::istringstream stream(line.substr(0, line.find('#')));
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

double number(std::vector<std::string> const &words, size_t i, double fallback)
{
    return i < words.size() ? std::atof(words[i].c_str()) : fallback;
}

// A file name's worth of the command: letters and digits, the rest as dashes.
std::string shotNameOf(int step, std::vector<std::string> const &words)
{
    char prefix[16];
    std::snprintf(prefix, sizeof prefix, "step-%02d", step);
    std::string name = prefix;
    for (size_t i = 0; i < words.size() && i < 2; ++i) {
        name += '-';
        for (char c : words[i])
            name += std::isalnum(static_cast<unsigned char>(c)) ? c : '-';
    }
    return name + ".bmp";
}

} // namespace

ScriptRunner::ScriptRunner(Workbench &bench, RunLog &log) : bench(bench), log(log) {}

bool ScriptRunner::load(PString const &path)
{
    PFile file;
    if (!file.open(path, PFile::readAccess, PFile::shareRead, PFile::openExisting)) {
        log.line("the script %s cannot be read", static_cast<char const *>(path));
        return false;
    }
    std::string text;
    char buffer[4096];
    for (long got; (got = file.read(buffer, sizeof buffer)) > 0;)
        text.append(buffer, got);
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        if (!wordsOf(line).empty())
            lines.push_back(line);
    log.line("script %s: %u commands", static_cast<char const *>(path), static_cast<unsigned>(lines.size()));
    return true;
}

void ScriptRunner::onIdle()
{
    if (finished)
        return;
    if (settling > 0) {
        if (--settling == 0) {
            const int result = saveScreenshot(bench, PString(shotName.c_str()));
            log.line("  screenshot %s%s", shotName.c_str(), result == 0 ? "" : " could not be written");
        }
        return;
    }
    if (nextLine == lines.size()) {
        finish();
        return;
    }
    const std::string line = lines[nextLine++];
    std::vector<std::string> words = wordsOf(line);
    // A command marked with "!" shows how a failure reaches the user: it is meant to fail.
    const bool meantToFail = words[0] == "!";
    if (meantToFail)
        words.erase(words.begin());
    if (words.empty() || words[0] == "quit") {
        finish();
        return;
    }
    ++step;
    log.line("step %d: %s", step, line.c_str());
    const double start = log.elapsed();
    const bool ok = run(words);
    PictureWindow *active = bench.activePicture();
    char const *outcome = ok == !meantToFail ? (ok ? "done" : "failed, as meant") : (ok ? "UNEXPECTEDLY DONE" : "FAILED");
    log.line("  %s in %.1f ms; %u windows%s%s", outcome, log.elapsed() - start, bench.pictureCount(),
             active ? ", active: " : "", active ? static_cast<char const *>(active->getTitle()) : "");
    if (ok == meantToFail)
        ++failures;
    shotName = shotNameOf(step, words);
    settling = idleStepsBeforeShot;
}

bool ScriptRunner::run(std::vector<std::string> const &words)
{
    std::string const &command = words[0];
    PString argument(words.size() > 1 ? words[1].c_str() : "");
    PictureWindow *active = bench.activePicture();
    if (command == "scene")
        return bench.newScene(static_cast<unsigned long>(number(words, 1, 480)),
                              static_cast<unsigned long>(number(words, 2, 360)),
                              static_cast<unsigned int>(number(words, 3, 1)));
    if (command == "open")
        return bench.open(argument);
    if (command == "save")
        return bench.saveActive(argument);
    if (command == "op") {
        Operation const *operation = findOperation(static_cast<char const *>(argument));
        if (!operation) {
            log.line("  no operation is called %s", static_cast<char const *>(argument));
            return false;
        }
        log.line("  %s", operation->title);
        return bench.apply(*operation);
    }
    if (command == "duplicate")
        return bench.duplicateActive();
    if (command == "close")
        return bench.closeActive();
    if (command == "activate")
        return bench.activate(static_cast<unsigned int>(number(words, 1, 0)));
    if (command == "tile" || command == "cascade") {
        if (command == "tile")
            bench.tileChildren();
        else
            bench.cascadeChildren();
        return true;
    }
    if (command == "outlines") {
        const bool ok = bench.traceOutlines();
        if (ok)
            log.line("  %d outlines traced", bench.activePicture()->outlineCount());
        return ok;
    }
    if (command == "screen") {
        const bool ok = bench.lineScreen();
        if (ok)
            log.line("  %d bars in the line screen", bench.activePicture()->barCount());
        return ok;
    }
    if (command == "crop")
        return bench.crop();
    if (!active) {
        log.line("  %s needs a picture window", command.c_str());
        return false;
    }
    if (command == "zoom") {
        active->setZoom(static_cast<int>(number(words, 1, 100)));
        bench.showActive();
        return true;
    }
    if (command == "scroll") {
        active->scrollToPicture(number(words, 1, 0), number(words, 2, 0));
        return true;
    }
    if (command == "select") {
        active->select(GPoint(number(words, 1, 0), number(words, 2, 0)), GPoint(number(words, 3, 0), number(words, 4, 0)));
        return true;
    }
    if (command == "drag") {
        active->queueDrag(GPoint(number(words, 1, 0), number(words, 2, 0)), GPoint(number(words, 3, 0), number(words, 4, 0)));
        return true;
    }
    if (command == "clear") {
        active->clearOverlays();
        return true;
    }
    log.line("  unknown command %s", command.c_str());
    return false;
}

void ScriptRunner::finish()
{
    finished = true;
    log.line("script finished: %d steps, %d failed; the frame closes", step, failures);
    bench.close();
}
