// GBrush.h - brushes as shared values.
//
//   backgroundMode  how text and hatches treat the background (TRANSPARENT, OPAQUE)
//   GBrush          solid or hatched fill, sharing one platform brush between copies
//   GBMBrush        a brush that repeats a bitmap
#pragma once

#include "foundation/GColor.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>

class GBitmap;

// The platform's background modes.
enum backgroundMode : int {
    TransparentBackground = TRANSPARENT,
    OpaqueBackground = OPAQUE,
};

class TESKWIN_API GBrush {
public:
    // A solid white brush.
    GBrush();
    explicit GBrush(GColor const &color);
    // A hatched brush; hatch is one of the platform's HS_ styles.
    GBrush(int hatch, GColor const &color);
    GBrush(GBrush const &other);
    virtual ~GBrush();

    GBrush &operator=(GBrush const &other);

    // What the brush was made with: BS_SOLID or BS_HATCHED, the colour, the hatch.
    int getBrushType() const { return static_cast<int>(logBrush.lbStyle); }
    GColor getBrushColor() const { return GColor(logBrush.lbColor); }
    int getHatchType() const { return static_cast<int>(logBrush.lbHatch); }

    // The stock null brush, which fills nothing.
    static const GBrush Null;

protected:
    // Replaces the platform brush by handle, which the brush then owns.
    void adopt(HBRUSH handle);

private:
    friend class GDevice;
    friend class PWindow;
    friend class GContext;

    // Names handle without owning it; logBrush stays unset.
    explicit GBrush(HBRUSH handle);

    operator HBRUSH() const { return shared.handle(); }

    LOGBRUSH logBrush;
    GSharedHandle<GHandleBox<HBRUSH>> shared;
};

class TESKWIN_API GBMBrush : public GBrush {
public:
    // A solid white brush, as GBrush().
    GBMBrush();
    // A brush repeating bitmap, which is not kept. The brush still describes itself as
    // solid white: deliberate, the pattern has no description of its own.
    explicit GBMBrush(GBitmap const &bitmap);
    GBMBrush(GBMBrush const &other) = default;
    ~GBMBrush() override;

    GBMBrush &operator=(GBMBrush const &other) = default;
};
