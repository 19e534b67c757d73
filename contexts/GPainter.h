// GPainter.h - the context of one paint message.
//
//   GPainter  begins the paint at construction and ends it when destroyed; holds the paint
//             rectangle
#pragma once

#include "contexts/GContext.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

class TESKWIN_API GPainter : public GContext {
    // Only the dispatch of WM_PAINT makes painters.
    friend class PDispatch;

public:
    GPainter(GPainter const &other) = default;
    GPainter &operator=(GPainter const &other) = default;
    ~GPainter() override;

    // The paint rectangle as the platform gave it, in device units.
    GRect clipRect();

private:
    // Without a live window there is no paint: the device has no handle.
    explicit GPainter(PWindowObject *window);

    PAINTSTRUCT paint;
};
