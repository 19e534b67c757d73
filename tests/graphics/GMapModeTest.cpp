#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"

#include <climits>
#include <cmath>

namespace {

void expectPoint(GPoint const &p, double x, double y)
{
    EXPECT_DOUBLE_EQ(double(p.xVal()), x);
    EXPECT_DOUBLE_EQ(double(p.yVal()), y);
}

GMapMode anisotropic(GPoint windowOrg, GPoint windowExt, GPoint viewportOrg, GPoint viewportExt)
{
    GMapMode mode(anisotropicMappingMode);
    mode.setWindowOrg(windowOrg);
    mode.setWindowExt(windowExt);
    mode.setViewportOrg(viewportOrg);
    mode.setViewportExt(viewportExt);
    return mode;
}

// A setter gives back the value it replaced.
TEST(GMapMode, SettersAnswerThePreviousValue)
{
    GMapMode mode(scaledMappingMode);
    expectPoint(mode.setWindowExt(GPoint(3, 4)), 0, 0);
    expectPoint(mode.setWindowExt(GPoint(5, 6)), 3, 4);
    expectPoint(mode.setViewportOrg(GPoint(7, 8)), 0, 0);
}

TEST(GMapMode, ConversionsStayFloatingAndInvert)
{
    const GMapMode mode = anisotropic(GPoint(10, 20), GPoint(100, -50), GPoint(3, 4), GPoint(400, 300));
    // (p - windowOrg) * (viewportExt / windowExt) + viewportOrg
    expectPoint(mode.logicalToDevice(GPoint(10.5, 20.5)), 3 + 0.5 * 4, 4 + 0.5 * -6);
    expectPoint(mode.deviceToLogical(GPoint(5, -2)), 10 + 2 * 0.25, 20 + -6 * (-50.0 / 300));
    const GPoint p(-33.3, 71.25);
    const GPoint back = mode.deviceToLogical(mode.logicalToDevice(p));
    EXPECT_NEAR(double(back.xVal()), -33.3, 1e-12);
    EXPECT_NEAR(double(back.yVal()), 71.25, 1e-12);

    // The mode itself is not looked at.
    GMapMode text;
    text.setViewportExt(GPoint(2, 2));
    text.setWindowExt(GPoint(1, 1));
    expectPoint(text.logicalToDevice(GPoint(5, 6)), 10, 12);

    // A zero extent yields what floating division yields.
    const GPoint inf = GMapMode().logicalToDevice(GPoint(1, 1));
    EXPECT_TRUE(std::isinf(double(inf.xVal())) || std::isnan(double(inf.xVal())));

    // Rectangles go corner by corner and are not normalised.
    const GRect r = mode.logicalToDevice(GRect(10, 20, 110, 70));
    expectPoint(GPoint(r.lVal(), r.tVal()), 3, 4);
    expectPoint(GPoint(r.rVal(), r.bVal()), 403, -296);
    const GRect l = mode.deviceToLogical(r);
    expectPoint(GPoint(l.rVal(), l.bVal()), 110, 70);
}

// The platform maps with the same formula and rounds to integers.
TEST(GMapMode, AgreesWithThePlatformsAnisotropicMapping)
{
    HDC dc = CreateCompatibleDC(nullptr);
    ASSERT_NE(dc, nullptr);
    struct Case {
        int wox, woy, wex, wey, vox, voy, vex, vey;
    };
    const Case cases[] = {{0, 0, 1, 1, 0, 0, 1, 1},
                          {10, 20, 100, -50, 3, 4, 400, 300},
                          {-7, 5, 3, 7, 11, -13, 1000, 17},
                          {1000, -1000, -640, 480, 320, 240, 640, 480}};
    for (Case const &c : cases) {
        SetMapMode(dc, MM_ANISOTROPIC);
        SetWindowExtEx(dc, c.wex, c.wey, nullptr);
        SetViewportExtEx(dc, c.vex, c.vey, nullptr);
        SetWindowOrgEx(dc, c.wox, c.woy, nullptr);
        SetViewportOrgEx(dc, c.vox, c.voy, nullptr);
        const GMapMode mode = anisotropic(GPoint(c.wox, c.woy), GPoint(c.wex, c.wey),
                                          GPoint(c.vox, c.voy), GPoint(c.vex, c.vey));
        for (int x = -40; x <= 40; x += 7) {
            for (int y = -30; y <= 30; y += 11) {
                POINT device{x, y};
                ASSERT_TRUE(LPtoDP(dc, &device, 1));
                const GPoint ours = mode.logicalToDevice(GPoint(x, y));
                EXPECT_NEAR(double(ours.xVal()), device.x, 0.5 + 1e-9) << c.wex << " " << x;
                EXPECT_NEAR(double(ours.yVal()), device.y, 0.5 + 1e-9) << c.wey << " " << y;
                POINT logical{x, y};
                ASSERT_TRUE(DPtoLP(dc, &logical, 1));
                const GPoint back = mode.deviceToLogical(GPoint(x, y));
                EXPECT_NEAR(double(back.xVal()), logical.x, 0.5 + 1e-9) << c.vex << " " << x;
                EXPECT_NEAR(double(back.yVal()), logical.y, 0.5 + 1e-9) << c.vey << " " << y;
            }
        }
    }
    DeleteDC(dc);
}

TEST(GDeviceMapMode, TranslatesByTruncation)
{
    const GDeviceMapMode identity;
    EXPECT_EQ(identity.scale, 1.0);
    EXPECT_EQ(GDeviceMapMode::translateX(identity, 2.9), 2);
    EXPECT_EQ(GDeviceMapMode::translateX(identity, -2.9), -2);
    EXPECT_EQ(GDeviceMapMode::translateY(identity, 7.99), 7);

    GDeviceMapMode m;
    m.scale = 1.5;
    m.offsetX = -4;
    m.offsetY = 10;
    // 1.5 * 3.3 - 4 = 0.95; 1.5 * -1 + 10 = 8.5
    EXPECT_EQ(GDeviceMapMode::translateX(m, 3.3), 0);
    EXPECT_EQ(GDeviceMapMode::translateY(m, -1), 8);
    EXPECT_EQ(GDeviceMapMode::translateX(m, 1), -2);
    EXPECT_EQ(GDeviceMapMode::translateX(m, 1e12), INT_MAX);
    EXPECT_EQ(GDeviceMapMode::translateY(m, -1e12), INT_MIN);
    EXPECT_DOUBLE_EQ(GDeviceMapMode::translateXinv(m, 2), 4.0);
    EXPECT_DOUBLE_EQ(GDeviceMapMode::translateYinv(m, 13), 2.0);
    EXPECT_DOUBLE_EQ(GDeviceMapMode::translateXinv(identity, -7), -7.0);

    // A scale near zero acts as one.
    GDeviceMapMode tiny;
    tiny.scale = 1e-10;
    tiny.offsetX = 5;
    EXPECT_EQ(GDeviceMapMode::translateXinv(tiny, 7), 2.0);
    tiny.scale = -1e-10;
    EXPECT_EQ(GDeviceMapMode::translateXinv(tiny, 7), 2.0);
    tiny.scale = 1e-8;
    EXPECT_DOUBLE_EQ(GDeviceMapMode::translateXinv(tiny, 7), 2e8);

    // The difference is a 32-bit one and wraps.
    GDeviceMapMode wrapped;
    wrapped.offsetY = INT_MIN;
    EXPECT_EQ(GDeviceMapMode::translateYinv(wrapped, 1), double(INT_MIN + 1));
}

TEST(GDeviceMapMode, EqualityHasAnAbsoluteScaleTolerance)
{
    GDeviceMapMode a, b;
    a.scale = 2.0;
    a.offsetX = 3;
    a.offsetY = -4;
    b = a;
    EXPECT_TRUE(a == b);
    b.scale = 2.0 + 5e-14;
    EXPECT_TRUE(a == b);
    b.scale = 2.0 - 2e-13;
    EXPECT_FALSE(a == b);
    b.scale = 2.0;
    b.offsetX = 4;
    EXPECT_FALSE(a == b);
    b.offsetX = 3;
    b.offsetY = -5;
    EXPECT_FALSE(a == b);
}

} // namespace
