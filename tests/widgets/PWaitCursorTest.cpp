#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "widgets/ControlHost.h"

namespace {

const HCURSOR arrow = LoadCursorA(nullptr, IDC_ARROW);
const HCURSOR hourglass = LoadCursorA(nullptr, IDC_WAIT);
const HCURSOR cross = LoadCursorA(nullptr, IDC_CROSS);

} // namespace

TEST(PWaitCursor, ScopesShowTheHourglassAndPutBackWhatTheyFound)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app);
    host->make();
    SetCursor(arrow);
    // No application, or no window: nothing happens.
    { PWaitCursor none; }
    { PWaitCursor nobody(nullptr); nobody.restore(); }
    EXPECT_EQ(arrow, GetCursor());

    {
        PWaitCursor outer(host);
        EXPECT_EQ(hourglass, GetCursor());
        {
            PWaitCursor inner(host);
            EXPECT_TRUE(host->getCursor() == PCursor(cursorWait));
        }
        // The inner scope put back the hourglass it found.
        EXPECT_EQ(hourglass, GetCursor());
    }
    EXPECT_EQ(arrow, GetCursor());
    EXPECT_TRUE(host->getCursor() == PCursor(cursorArrow));

    // The default form works on the application's main window.
    setApplication(&app);
    app.mainWindow = host;
    { PWaitCursor onMain; EXPECT_EQ(hourglass, GetCursor()); }
    EXPECT_EQ(arrow, GetCursor());
    app.mainWindow = nullptr;
    setApplication(nullptr);

    // Released once: neither restore nor the destructor touches the cursor again.
    {
        PWaitCursor released(host);
        released.release();
        EXPECT_EQ(arrow, GetCursor());
        host->setCursor(PCursor(cursorCross));
        released.restore();
        released.release();
    }
    EXPECT_EQ(cross, GetCursor());

    // A copy holds the same window: each puts the saved cursor back.
    {
        PWaitCursor first(host);
        PWaitCursor second(first);
        first.release();
        EXPECT_EQ(cross, GetCursor());
        host->setCursor(PCursor(cursorArrow));
        second.release();
        EXPECT_EQ(cross, GetCursor());
    }
    host->shutDownWindow();
}
