// PChildFrame.h - a window that holds one client window inside a border.
//
//   PChildFrame  keeps its client window sized to fit inside four offsets
#pragma once

#include "foundation/TeskWinExport.h"
#include "windows/PWindow.h"

class TESKWIN_API PChildFrame : public PWindow {
public:
    PChildFrame(PWindowObject *parent, PString const &caption, PWindow *client, PAppInterface *app);
    PChildFrame(PWindowObject *parent, PString const &caption, PWindow *client, PAppInterface *app,
                unsigned long style);
    PChildFrame(PChildFrame const &other) = default;
    PChildFrame &operator=(PChildFrame const &other) = default;

    char *getClassName() override;
    ~PChildFrame() override;
    // Forgets the client first, so that a resize during the shut-down no longer reaches it;
    // the client itself is shut down by the tree, if it is in it.
    void shutDownWindow() override;
    // Resizes the client with the window; never claims.
    int resizeEvent(GPoint const &size) override;

    // Stored only: the client moves at the next resize.
    void setLOffset(int offset) { lOffset = offset; }
    void setROffset(int offset) { rOffset = offset; }
    void setTOffset(int offset) { tOffset = offset; }
    void setBOffset(int offset) { bOffset = offset; }
    int getLOffset() const { return lOffset; }
    int getROffset() const { return rOffset; }
    int getTOffset() const { return tOffset; }
    int getBOffset() const { return bOffset; }
    PWindow *getClient() const { return client; }
    // Stores the client and fits it at once.
    void setClient(PWindow *client);

protected:
    // The client fills the client area less all four offsets.
    void resizeClient();

private:
    PWindow *client;
    int rOffset;
    int lOffset;
    int tOffset;
    int bOffset;
};
