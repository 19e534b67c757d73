// LeakCheck.h - a scope in which the library must delete every platform object it makes.
#pragma once

#include <gtest/gtest.h>

#include "support/GdiObjectCounter.h"

// Declared first in a test, so that it is destroyed after everything the test made.
class ExpectNoLeaks {
public:
    ~ExpectNoLeaks()
    {
        EXPECT_EQ(counter.live(), 0) << "platform objects the library made and never deleted";
        EXPECT_TRUE(counter.eachDeletedOnce()) << "a platform object deleted twice, or one not the library's";
    }

    GdiObjectCounter counter;
};
