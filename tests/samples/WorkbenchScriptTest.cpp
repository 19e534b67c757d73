// The workbench's script mode, run as its own process on short scripts: its exit code, the
// files it leaves and what its log says.
#include <TeskWin.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace {

// Long enough for a slow machine; a workbench that hangs fails here instead of the suite.
const DWORD runLimitMs = 90000;
const DWORD hungExitCode = 0xDEAD;

std::string programFolder()
{
    char path[MAX_PATH];
    const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
    std::string folder(path, length);
    return folder.substr(0, folder.find_last_of("\\/") + 1);
}

// A fresh folder for one run, with the script in it.
class ScriptFolder {
public:
    ScriptFolder(char const *name, std::string const &script)
    {
        char temp[MAX_PATH];
        GetTempPathA(sizeof temp, temp);
        folder = std::string(temp) + name + "-" + std::to_string(GetCurrentProcessId()) + "\\";
        CreateDirectoryA(folder.c_str(), nullptr);
        std::ofstream(folder + "test.wbs") << script;
    }

    std::string path(char const *file) const { return folder + file; }
    bool has(char const *file) const { return GetFileAttributesA(path(file).c_str()) != INVALID_FILE_ATTRIBUTES; }

    std::string read(char const *file) const
    {
        std::ifstream in(path(file));
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

    // The workbench's exit code.
    DWORD runWorkbench() const
    {
        const std::string program = programFolder() + "workbench_under_test.exe";
        std::string commandLine = "\"" + program + "\" --script test.wbs";
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (!CreateProcessA(program.c_str(), &commandLine[0], nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(),
                            &startup, &process))
            return GetLastError();
        DWORD code = hungExitCode;
        if (WaitForSingleObject(process.hProcess, runLimitMs) == WAIT_OBJECT_0)
            GetExitCodeProcess(process.hProcess, &code);
        else
            TerminateProcess(process.hProcess, hungExitCode);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
        return code;
    }

private:
    std::string folder;
};

} // namespace

TEST(WorkbenchScript, RunsAChainOfOperationsAndLeavesScreenshotsPicturesAndLog)
{
    ScriptFolder run("workbench-chain", "scene 160 120 3\n"
                                        "op edges        # banded: progress between bands\n"
                                        "save edges.png\n"
                                        "open edges.png  # read back through the imaging component\n"
                                        "duplicate\n"
                                        "op octree16\n"
                                        "outlines\n"
                                        "tile\n"
                                        "select 10 10 60 50\n"
                                        "crop\n"
                                        "! open missing.bmp\n"
                                        "save cut.bmp\n");
    ASSERT_EQ(run.runWorkbench(), 0u) << run.read("workbench.log");

    const std::string log = run.read("workbench.log");
    EXPECT_NE(log.find("script finished: 12 steps, 0 failed"), std::string::npos) << log;
    EXPECT_NE(log.find("message box (not shown in a script run): The picture could not be opened: there is no such file"),
              std::string::npos)
        << log;
    EXPECT_NE(log.find("Sobel edge detection"), std::string::npos);
    for (int step = 1; step <= 12; ++step) {
        char needle[32];
        std::snprintf(needle, sizeof needle, "screenshot step-%02d-", step);
        const size_t at = log.find(needle);
        ASSERT_NE(at, std::string::npos) << needle;
        const std::string name = log.substr(at + 11, log.find_first_of("\r\n", at) - at - 11);
        EXPECT_TRUE(run.has(name.c_str())) << name;
    }

    // The edges picture comes back from its PNG file at the scene's size; the cut one is the
    // selection, 51 by 41 pixels, with the 16 colours of the reduction.
    PImage edges;
    ASSERT_EQ(edges.load(PString(run.path("edges.png").c_str())), 0);
    EXPECT_EQ(edges.getWidth(), 160);
    EXPECT_EQ(edges.getHeight(), 120);
    EXPECT_NE(log.find("2 windows, active: edges.png\n"), std::string::npos) << log;
    GDiBitmap cut;
    ASSERT_EQ(cut.load(PString(run.path("cut.bmp").c_str())), 0);
    EXPECT_EQ(cut.getWidth(), 51);
    EXPECT_EQ(cut.getHeight(), 41);
    EXPECT_LE(cut.numColors(), 256);
    GDiBitmap shot;
    // Screenshots are true colour, which the .bmp reader refuses: it says so and no more.
    EXPECT_EQ(shot.load(PString(run.path("step-01-scene-160.bmp").c_str())), 1);
}

TEST(WorkbenchScript, AMouseDragOverAZoomedScrolledViewSelectsThePicturePixelsUnderIt)
{
    // At 200% scrolled to (20, 10), picture points (30, 20) and (60, 40) lie at client points
    // (20, 20) and (80, 60): inside the window, so that nothing scrolls while dragging.
    ScriptFolder run("workbench-drag", "scene 200 150 4\n"
                                       "save whole.png\n"
                                       "zoom 200\n"
                                       "scroll 20 10\n"
                                       "drag 30 20 60 40\n"
                                       "crop\n"
                                       "save part.png\n");
    ASSERT_EQ(run.runWorkbench(), 0u) << run.read("workbench.log");
    PImage whole, part;
    ASSERT_EQ(whole.load(PString(run.path("whole.png").c_str())), 0);
    ASSERT_EQ(part.load(PString(run.path("part.png").c_str())), 0);
    EXPECT_EQ(part.getWidth(), 31);
    EXPECT_EQ(part.getHeight(), 21);
    for (unsigned long y = 0; y < 21; y += 5)
        for (unsigned long x = 0; x < 31; x += 5)
            EXPECT_TRUE(part.getPixel(y, x) == whole.getPixel(y + 20, x + 30)) << x << ", " << y;
}

TEST(WorkbenchScript, AnUnknownCommandFailsTheRunButNotTheProgram)
{
    ScriptFolder run("workbench-unknown", "scene 64 48\nfrobnicate\nop no-such-operation\nsave out.bmp\n");
    EXPECT_EQ(run.runWorkbench(), 1u);
    const std::string log = run.read("workbench.log");
    EXPECT_NE(log.find("unknown command frobnicate"), std::string::npos) << log;
    EXPECT_NE(log.find("no operation is called no-such-operation"), std::string::npos) << log;
    EXPECT_NE(log.find("script finished: 4 steps, 2 failed"), std::string::npos) << log;
    EXPECT_TRUE(run.has("out.bmp"));
}

TEST(WorkbenchScript, AMissingScriptEndsAtOnce)
{
    ScriptFolder run("workbench-missing", "");
    DeleteFileA(run.path("test.wbs").c_str());
    EXPECT_EQ(run.runWorkbench(), 1u);
    EXPECT_NE(run.read("workbench.log").find("cannot be read"), std::string::npos);
}
