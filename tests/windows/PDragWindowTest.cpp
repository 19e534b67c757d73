#include <gtest/gtest.h>

#include "support/ImportPatch.h"
#include "support/TestApplication.h"
#include "windows/WindowProbes.h"

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

TestApplication theApp;

int finishedDrops = 0;

void WINAPI countingDragFinish(HDROP drop)
{
    ++finishedDrops;
    DragFinish(drop);
}

UINT WINAPI countNoFiles(HDROP, UINT, LPSTR, UINT)
{
    return 0;
}

// Counts the drops that the library finishes, from the library's own import.
class DropFinishCounter {
public:
    DropFinishCounter() : patch("TeskWin.dll", "shell32.dll", "DragFinish", reinterpret_cast<void *>(&countingDragFinish))
    {
        finishedDrops = 0;
    }
    bool isActive() const { return patch.isActive(); }

private:
    ImportPatch patch;
};

// The block the shell hands over: a DROPFILES header, then the names, each ended by a zero,
// and one more zero.
HGLOBAL dropOf(std::vector<std::string> const &names)
{
    // Two zeros at least, so that an empty list is an empty name and the end.
    std::size_t size = sizeof(DROPFILES) + 2;
    for (std::string const &name : names)
        size += name.size() + 1;
    HGLOBAL block = GlobalAlloc(GHND, size);
    DROPFILES *header = static_cast<DROPFILES *>(GlobalLock(block));
    header->pFiles = sizeof(DROPFILES);
    header->fWide = FALSE;
    char *text = reinterpret_cast<char *>(header + 1);
    for (std::string const &name : names) {
        std::memcpy(text, name.c_str(), name.size() + 1);
        text += name.size() + 1;
    }
    GlobalUnlock(block);
    return block;
}

class DropTarget : public PDragWindow {
public:
    DropTarget() : PDragWindow(nullptr, PString("drop target"), &theApp) { setSize(200, 120); }
    char *getClassName() override
    {
        static char name[] = "TeskWinDropTarget";
        return name;
    }
    int droppedFile(PString const &path) override
    {
        files.push_back(static_cast<char const *>(path));
        return static_cast<int>(files.size()) != refuseAt;
    }
    std::vector<std::string> files;
    int refuseAt = 0;
};

class FramedClient : public PWindow {
public:
    explicit FramedClient(PWindowObject *parent) : PWindow(parent, PString("client"), &theApp, WS_CHILD | WS_VISIBLE) {}
    char *getClassName() override
    {
        static char name[] = "TeskWinFramedClient";
        return name;
    }
};

} // namespace

TEST(PDragWindow, EveryDroppedFileReachesDroppedFileAndTheDropIsFinished)
{
    DropFinishCounter finished;
    ASSERT_TRUE(finished.isActive());
    DropTarget *window = created(new DropTarget);
    EXPECT_TRUE(GetWindowLongPtrA(*window, GWL_EXSTYLE) & WS_EX_ACCEPTFILES);

    const std::vector<std::string> names = {"C:\\first.txt", "C:\\folder\\second.bmp", "third"};
    EXPECT_EQ(1, SendMessageA(*window, WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf(names)), 0));
    EXPECT_EQ(names, window->files);
    EXPECT_EQ(1, finishedDrops);

    // A refusal stops the drop at that file; the drop is finished all the same.
    window->files.clear();
    window->refuseAt = 1;
    EXPECT_EQ(1, SendMessageA(*window, WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf(names)), 0));
    EXPECT_EQ(std::vector<std::string>{names[0]}, window->files);
    EXPECT_EQ(2, finishedDrops);

    // A drop with no files is claimed and finished. The platform here counts one empty name
    // in an empty list, so the count is made 0 at the library's import.
    window->files.clear();
    {
        ImportPatch noFiles("TeskWin.dll", "shell32.dll", "DragQueryFileA", reinterpret_cast<void *>(&countNoFiles));
        ASSERT_TRUE(noFiles.isActive());
        EXPECT_EQ(1, SendMessageA(*window, WM_DROPFILES, reinterpret_cast<WPARAM>(dropOf({})), 0));
    }
    EXPECT_TRUE(window->files.empty());
    EXPECT_EQ(3, finishedDrops);
    window->shutDownWindow();
}

TEST(PChildFrame, TheClientFillsTheAreaInsideTheOffsets)
{
    PChildFrame *frame = new PChildFrame(nullptr, PString("child frame"), nullptr, &theApp, WS_VISIBLE);
    frame->setSize(240, 180);
    ASSERT_NE(0, frame->registerWindow());
    ASSERT_EQ(1, frame->create());
    EXPECT_STREQ("PCHILDFRAME", frame->getClassName());
    // With no client, resizing reaches nobody.
    frame->sizeWindow(GPoint(250, 190));

    FramedClient *client = new FramedClient(frame);
    ASSERT_NE(0, client->registerWindow());
    ASSERT_EQ(1, client->create());
    RECT area;
    GetClientRect(*frame, &area);

    // Zero offsets: the whole client area.
    frame->setClient(client);
    RECT placed = placementIn(*frame, *client);
    EXPECT_EQ(0, placed.left);
    EXPECT_EQ(0, placed.top);
    EXPECT_EQ(area.right, placed.right);
    EXPECT_EQ(area.bottom, placed.bottom);

    // Offsets wait for the next resize.
    frame->setLOffset(5);
    frame->setTOffset(7);
    frame->setROffset(11);
    frame->setBOffset(13);
    EXPECT_EQ(0, placementIn(*frame, *client).left);
    frame->sizeWindow(GPoint(260, 200));
    GetClientRect(*frame, &area);
    placed = placementIn(*frame, *client);
    EXPECT_EQ(5, placed.left);
    EXPECT_EQ(7, placed.top);
    EXPECT_EQ(area.right - 11, placed.right);
    EXPECT_EQ(area.bottom - 13, placed.bottom);

    HWND clientHandle = *client;
    frame->shutDownWindow();
    EXPECT_FALSE(IsWindow(clientHandle));
}
