// PDragWindow.h - a window that accepts files dropped from the shell.
//
//   PDragWindow  hands each dropped file to droppedFile, then finishes the drop
#pragma once

#include "foundation/TeskWinExport.h"
#include "windows/PWindow.h"

#include <windows.h>

class TESKWIN_API PDragWindow : public PWindow {
public:
    PDragWindow(PWindow *parent, PString const &caption, PAppInterface *app);
    PDragWindow(PDragWindow const &other) = default;
    PDragWindow &operator=(PDragWindow const &other) = default;

    // Registers the window as a drop target, then the window's own set-up.
    void setupWindow() override;
    ~PDragWindow() override;

protected:
    // 41: one dropped file; 0 refuses the rest of the drop. Accepts all by default.
    virtual int droppedFile(PString const &path);

private:
    // Offers the files in order until one is refused; the drop is finished in every case.
    int dropEvent(HDROP drop, int fileCount) override;
};
