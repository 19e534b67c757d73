#include <gtest/gtest.h>

#include "TeskWin.h"

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(PRefCount, CountsHolders)
{
    int held = 0;
    PRefCount count(&held);
    EXPECT_EQ(count.pointer(), &held);
    EXPECT_EQ(&++count, &count);
    ++count;
    EXPECT_EQ(count.decrement(), 2UL);
    EXPECT_EQ(count.decrement(), 1UL);
    EXPECT_EQ(count.decrement(), 0UL);
    EXPECT_EQ(count.decrement(), 0UL);
    EXPECT_EQ(count.pointer(), &held);
}

std::atomic<int> deletions{0};

// Runs `work` on `count` threads that start together, so that they really overlap.
template <class Work>
void runTogether(int count, Work work)
{
    std::atomic<int> waiting{count};
    std::vector<std::thread> threads;
    for (int t = 0; t < count; ++t) {
        threads.emplace_back([&waiting, &work, t] {
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            work(t);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

struct Held {
    ~Held() { ++deletions; }
};

// A value sharing one Held object, following the shared-handle pattern: counters are
// read and changed only under the lock, and the object is deleted outside it.
class SharedHeld {
public:
    explicit SharedHeld(Held *held) : counter(new PRefCount(held)) {}
    SharedHeld(SharedHeld const &other) : counter(nullptr) { assign(other.counter); }
    SharedHeld &operator=(SharedHeld const &other)
    {
        assign(other.counter);
        return *this;
    }
    ~SharedHeld() { assign(nullptr); }

    // The current count, read under the lock.
    unsigned long holders() const
    {
        PRefCountLock lock;
        ++*counter;
        return counter->decrement();
    }

private:
    void assign(PRefCount *const &newCounter)
    {
        PRefCount *old;
        unsigned long left = 1;
        {
            PRefCountLock lock;
            old = counter;
            counter = newCounter;
            if (counter)
                ++*counter;
            if (old)
                left = old->decrement();
        }
        if (old && left < 1) {
            delete static_cast<Held *>(old->pointer());
            delete old;
        }
    }

    PRefCount *counter;
};

TEST(PRefCount, LockKeepsCountsExactAcrossThreads)
{
    deletions = 0;
    auto *original = new SharedHeld(new Held);
    const SharedHeld &shared = *original;
    runTogether(8, [&shared](int) {
        for (int i = 0; i < 50000; ++i) {
            SharedHeld copy(shared);
            SharedHeld other = copy;
            other = shared;
        }
    });
    EXPECT_EQ(shared.holders(), 1UL);
    EXPECT_EQ(deletions.load(), 0);

    // The last holders go on several threads at once: the object goes exactly once.
    std::vector<SharedHeld *> copies;
    for (int t = 0; t < 8; ++t)
        copies.push_back(new SharedHeld(shared));
    delete original;
    EXPECT_EQ(deletions.load(), 0);
    runTogether(8, [&copies](int t) { delete copies[t]; });
    EXPECT_EQ(deletions.load(), 1);
}

TEST(PRefCount, LockExcludesOtherThreads)
{
    long total = 0;
    runTogether(4, [&total](int) {
        for (int i = 0; i < 500000; ++i) {
            PRefCountLock lock;
            volatile long value = total;
            total = value + 1;
        }
    });
    EXPECT_EQ(total, 2000000);
}

} // namespace
