// The shared-handle holder on a box of the test's own: one deletion with the last share,
// made outside the reference-count lock, and shares taken and dropped from several threads.
#include <gtest/gtest.h>

#include "TeskWin.h"
#include "support/GdiObjectCounter.h"

#include <chrono>
#include <future>
#include <memory>
#include <thread>

namespace {

// True when another thread can take the reference-count lock within a second. The thread
// is left to finish on its own, so that a lock held by the caller cannot hang the test.
bool lockIsFree()
{
    auto done = std::make_shared<std::promise<void>>();
    std::future<void> taken = done->get_future();
    std::thread([done] {
        PRefCountLock lock;
        done->set_value();
    }).detach();
    return taken.wait_for(std::chrono::seconds(1)) == std::future_status::ready;
}

int probesDeleted;
bool deletedWhileLocked;

struct ProbeBox {
    using Handle = int;
    int handle;
    ~ProbeBox()
    {
        ++probesDeleted;
        deletedWhileLocked = !lockIsFree();
    }
};

TEST(GSharedHandle, TheLastShareDeletesTheBoxOnceOutsideTheLock)
{
    probesDeleted = 0;
    deletedWhileLocked = false;
    {
        GSharedHandle<ProbeBox> first(new ProbeBox{7});
        GSharedHandle<ProbeBox> copy(first);
        GSharedHandle<ProbeBox> empty;
        EXPECT_EQ(empty.box(), nullptr);
        EXPECT_EQ(empty.handle(), 0);
        empty = copy;
        copy = copy;
        first = GSharedHandle<ProbeBox>();
        copy.reset(nullptr);
        EXPECT_EQ(probesDeleted, 0);
        EXPECT_EQ(empty.handle(), 7);
    }
    EXPECT_EQ(probesDeleted, 1);
    EXPECT_FALSE(deletedWhileLocked);

    GSharedHandle<ProbeBox> replaced(new ProbeBox{1});
    replaced.reset(new ProbeBox{2});
    EXPECT_EQ(probesDeleted, 2);
    EXPECT_EQ(replaced.handle(), 2);
}

TEST(GSharedHandle, SharesTakenAndDroppedOnTwoThreadsDeleteThePenOnce)
{
    GdiObjectCounter counter;
    {
        GPen pen(GColor::Red, 2, LineSolid);
        GPen target;
        auto churn = [&pen] {
            for (int i = 0; i < 20000; ++i) {
                GPen copy(pen);
                GPen other;
                other = copy;
            }
        };
        std::thread second(churn);
        churn();
        second.join();
        EXPECT_EQ(counter.deleteCalls(), 0);
        target = pen;
    }
    EXPECT_EQ(counter.created(), 1);
    EXPECT_TRUE(counter.eachDeletedOnce());
}

} // namespace
