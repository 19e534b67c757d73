// ContainersBench.cpp - what the list's cursor and relinking buy.
//
// Reads by rising index through operator() should cost the same per read at every length,
// since each one is a single step of the cursor; add, join and inject should cost the same
// per call on a list of ten and on a list of a million, since they only relink nodes.
#include "TeskWin.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double nanosecondsPer(Clock::time_point start, double operations)
{
    const std::chrono::duration<double, std::nano> elapsed = Clock::now() - start;
    return elapsed.count() / operations;
}

void fill(PList<int> &list, unsigned int length)
{
    for (unsigned int i = 0; i < length; ++i)
        list.add(static_cast<int>(i));
}

long long checksum = 0;

void sequentialReads()
{
    std::printf("operator() by rising index (best of 3 passes)\n");
    std::printf("%10s %12s %12s\n", "length", "pass ms", "ns/read");
    for (unsigned int length : {100000u, 300000u, 1000000u}) {
        PList<int> list;
        fill(list, length);
        double best = 1e30;
        for (int pass = 0; pass < 3; ++pass) {
            const Clock::time_point start = Clock::now();
            for (unsigned int i = 0; i < length; ++i)
                checksum += list(i);
            const double perRead = nanosecondsPer(start, length);
            if (perRead < best)
                best = perRead;
        }
        std::printf("%10u %12.2f %12.2f\n", length, best * length / 1e6, best);
    }
}

// For contrast: reads that jump half the list each time, where the cursor cannot help.
void jumpingReads()
{
    const unsigned int length = 100000;
    const unsigned int reads = 2000;
    PList<int> list;
    fill(list, length);
    const Clock::time_point start = Clock::now();
    for (unsigned int i = 0; i < reads; ++i)
        checksum += list(i % 2 == 0 ? i : i + length / 2);
    std::printf("contrast: reads jumping by length/2 on %u elements: %.0f ns/read\n\n", length,
                nanosecondsPer(start, reads));
}

// Best of 20 rounds of 1000 calls on one short list (10 elements, 1010 at the end of a
// round) and on one long list (a million), each call taking a fresh one-element donor.
template <typename Operation>
void perCall(char const *name, PList<int> &longList, Operation operation)
{
    const unsigned int calls = 1000;
    double onShort = 1e30;
    double onLong = 1e30;
    for (int round = 0; round < 20; ++round) {
        PList<int> shortList;
        fill(shortList, 10);
        std::vector<PList<int>> donors(2 * calls);
        for (PList<int> &donor : donors)
            donor.add(1);

        Clock::time_point start = Clock::now();
        for (unsigned int i = 0; i < calls; ++i)
            operation(shortList, donors[i]);
        onShort = std::min(onShort, nanosecondsPer(start, calls));

        start = Clock::now();
        for (unsigned int i = 0; i < calls; ++i)
            operation(longList, donors[calls + i]);
        onLong = std::min(onLong, nanosecondsPer(start, calls));
    }
    std::printf("%-12s %14.1f %16.1f\n", name, onShort, onLong);
}

void constantTimeOperations()
{
    PList<int> longList;
    fill(longList, 1000000);
    std::printf("ns per call, best of 20 rounds of 1000 calls\n");
    std::printf("%-12s %14s %16s\n", "operation", "length 10", "length 1000000");
    perCall("add", longList, [](PList<int> &list, PList<int> &) { list.add(7); });
    perCall("join", longList, [](PList<int> &list, PList<int> &donor) { list.join(donor); });
    perCall("inject -1", longList, [](PList<int> &list, PList<int> &donor) { list.inject(donor, -1); });
    perCall("inject 0", longList, [](PList<int> &list, PList<int> &donor) { list.inject(donor, 0); });
}

} // namespace

int main()
{
    sequentialReads();
    jumpingReads();
    constantTimeOperations();
    std::printf("(checksum %lld)\n", checksum);
    return 0;
}
