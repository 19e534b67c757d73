// GdiObjectCounter.h - counts the platform objects that TeskWin.dll creates and deletes.
//
//   GdiObjectCounter  while alive, records every GDI object (pens, brushes, fonts, palettes,
//                     bitmaps, regions, device contexts, metafiles) that the library makes and
//                     every DeleteObject, DeleteDC and DeleteEnhMetaFile it calls
//
// It patches the library's own imports (see ImportPatch), so objects that the test program
// makes itself are not counted. One counter at a time.
#pragma once

#include "support/ImportPatch.h"

#include <memory>
#include <vector>

struct GdiLedger;

class GdiObjectCounter {
public:
    explicit GdiObjectCounter(char const *module = "TeskWin.dll");
    ~GdiObjectCounter();
    GdiObjectCounter(GdiObjectCounter const &) = delete;
    GdiObjectCounter &operator=(GdiObjectCounter const &) = delete;

    // Objects created so far, in order, and the last of them (null if none).
    int created() const;
    void *lastCreated() const;
    // How often the library deleted handle: for an object it created while counting, the
    // deletions of its latest creation; for any other handle, every deletion of that value.
    int deletions(void *handle) const;
    // Every deletion call, whatever the handle.
    int deleteCalls() const;
    // Created objects not yet deleted.
    int live() const;
    // True when every created object was deleted exactly once and nothing else was deleted.
    bool eachDeletedOnce() const;

private:
    std::unique_ptr<GdiLedger> ledger;
    std::vector<std::unique_ptr<ImportPatch>> patches;
};
