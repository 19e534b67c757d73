#include "contexts/GPainter.h"

#include "events/PWindowObject.h"

GPainter::GPainter(PWindowObject *window) : paint()
{
    this->window = window;
    if (window && window->isValidWindow()) {
        dc = BeginPaint(*window, &paint);
        initObjects();
        GetTextMetricsA(dc, &textMetrics);
        noRelease = 1;
    }
}

GPainter::~GPainter()
{
    if (dc) {
        // The saved state goes back before the paint ends.
        if (savedState)
            RestoreDC(dc, savedState);
        savedState = 0;
        EndPaint(*window, &paint);
        dc = nullptr;
    }
}

GRect GPainter::clipRect()
{
    return GRect(paint.rcPaint);
}
