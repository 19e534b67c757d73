// BenchTimer.h - the one clock of the benchmark programs.
#pragma once

#include <windows.h>

// Runs body(calls) once and gives the time per call in nanoseconds.
template <class Body>
double nanosecondsPerCall(int calls, Body body)
{
    LARGE_INTEGER frequency, start, end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    body(calls);
    QueryPerformanceCounter(&end);
    return 1e9 * static_cast<double>(end.QuadPart - start.QuadPart) / static_cast<double>(frequency.QuadPart) / calls;
}
