#include <gtest/gtest.h>

#include "support/ReadBack.h"
#include "support/TestApplication.h"
#include "widgets/ControlHost.h"
#include "windows/WindowProbes.h"

namespace {

const COLORREF red = RGB(255, 0, 0);
const COLORREF green = RGB(0, 255, 0);
const COLORREF blue = RGB(0, 0, 255);
const COLORREF yellow = RGB(255, 255, 0);

// A 32-bit bitmap of one colour, with a white square in its top-left corner when marked.
GBitmap filledBitmap(int width, int height, COLORREF colour, bool marked = false)
{
    GBitmap bitmap = colourBitmap(width, height);
    const PlatformPixels pixels(bitmap);
    pixels.fill(0, 0, width, height, colour);
    if (marked)
        pixels.fill(0, 0, 4, 4, RGB(255, 255, 255));
    return bitmap;
}

} // namespace

TEST(PImageList, ListsAreMadeFilledAndSharedByCopies)
{
    ExpectNoLeaks leaks;
    PImageList none;
    GBitmap image = filledBitmap(16, 16, red);
    EXPECT_EQ(4, none.addImage(image, nullptr));
    EXPECT_EQ(4, none.addImage(image, GColor(255, 255, 255)));
    EXPECT_EQ(4, none.replace(0, image, nullptr));
    EXPECT_EQ(0, none.length());
    EXPECT_EQ(0.0, none.getImageSize(0).rVal());
    EXPECT_EQ(nullptr, none.extractIcon(0));

    PImageList list;
    ASSERT_EQ(0, list.create(GPoint(16, 16), 4));
    EXPECT_EQ(0, list.addImage(image, nullptr));
    // A bitmap twice as wide holds two images.
    EXPECT_EQ(0, list.addImage(filledBitmap(32, 16, blue), nullptr));
    EXPECT_EQ(3, list.length());
    // An image that is not a bitmap is refused; one narrower than the list's images holds
    // none, which the platform does not call a failure.
    EXPECT_EQ(2, list.addImage(GBitmap(), nullptr));
    EXPECT_EQ(0, list.addImage(filledBitmap(8, 16, red), nullptr));
    EXPECT_EQ(3, list.length());
    EXPECT_EQ(0, list.replace(1, filledBitmap(16, 16, green), nullptr));
    EXPECT_EQ(3, list.replace(99, image, nullptr));
    const GRect size = list.getImageSize(2);
    EXPECT_EQ(16.0, size.width());
    EXPECT_EQ(16.0, size.height());
    EXPECT_EQ(0.0, list.getImageSize(99).width());

    HICON icon = list.extractIcon(1);
    ASSERT_NE(nullptr, icon);
    ICONINFO info = {};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    BITMAP shape = {};
    GetObjectA(info.hbmColor, sizeof shape, &shape);
    EXPECT_EQ(16, shape.bmWidth);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    DestroyIcon(icon);

    // Copies share the list; a new create replaces this object's list only.
    PImageList copy(list);
    copy = copy;
    EXPECT_EQ(0, copy.addImage(image, nullptr));
    EXPECT_EQ(4, list.length());
    ASSERT_EQ(0, list.create(GPoint(8, 8), 1));
    EXPECT_EQ(0, list.length());
    EXPECT_EQ(4, copy.length());
    { PImageList third(copy); }
    EXPECT_EQ(4, copy.length());

    // A failure on the third image returns 2 and keeps the two before it.
    PList<GBitmap> images;
    images.add(filledBitmap(16, 16, red));
    images.add(filledBitmap(16, 16, green));
    images.add(GBitmap());
    PList<GBitmap> masks;
    for (int i = 0; i < 3; ++i)
        masks.add(GBitmap(nullptr, 16, 16, 1, 1));
    PImageList masked;
    EXPECT_EQ(2, masked.create(GPoint(16, 16), images, &masks));
    EXPECT_EQ(2, masked.length());
    // The masked list takes a transparent colour as its mask.
    EXPECT_EQ(0, masked.addImage(filledBitmap(16, 16, blue), GColor(255, 255, 255)));
    EXPECT_EQ(3, masked.length());
}

TEST(PImageList, ImagesAreDrawnAloneAndAsTilesOnAWindow)
{
    ExpectNoLeaks leaks;
    TestApplication app;
    ControlHost *host = new ControlHost(&app, 200, 160);
    host->make();
    PList<GBitmap> images;
    for (COLORREF colour : {red, green, blue, yellow})
        images.add(filledBitmap(32, 32, colour, true));
    PImageList list;
    ASSERT_EQ(0, list.create(GPoint(32, 32), images, nullptr));
    ASSERT_EQ(4, list.length());
    {
        GContext context(host, GCClient);
        // 200 / 52 gives three columns: image 3 starts the second row at x 0.
        EXPECT_EQ(0, list.draw(context, GPoint(0, 0)));
        EXPECT_EQ(red, pixelAt(*host, 16, 16));
        EXPECT_EQ(RGB(255, 255, 255), pixelAt(*host, 1, 1));
        EXPECT_EQ(RGB(255, 255, 255), pixelAt(*host, 40, 16));
        EXPECT_EQ(green, pixelAt(*host, 68, 16));
        EXPECT_EQ(blue, pixelAt(*host, 120, 16));
        EXPECT_EQ(RGB(255, 255, 255), pixelAt(*host, 172, 16));
        EXPECT_EQ(yellow, pixelAt(*host, 16, 68));

        // One image at a logical point, in whatever mapping the context has; the mapping
        // comes back afterwards.
        context.setMapMode(GMapMode(loMetricMappingMode));
        EXPECT_EQ(0, list.draw(context, 2, GPoint(150, 100), ILD_NORMAL));
        EXPECT_EQ(MM_LOMETRIC, GetMapMode(context));
        EXPECT_EQ(loMetricMappingMode, context.getMapMode().getMode());
        context.setMapMode(GMapMode(textMappingMode));
        EXPECT_EQ(blue, pixelAt(*host, 170, 120));
        EXPECT_EQ(RGB(255, 255, 255), pixelAt(*host, 151, 101));

        // An area narrower than one tile has no column: nothing is drawn.
        GContext fresh(host, GCClient);
        fresh.clearWindow();
        const int right = static_cast<int>(fresh.getDeviceArea().xVal());
        EXPECT_EQ(0, list.draw(fresh, GPoint(right - 10, 0)));
        EXPECT_EQ(RGB(255, 255, 255), pixelAt(*host, right - 5, 10));
        // An empty list draws nothing and keeps the mapping.
        PImageList empty;
        ASSERT_EQ(0, empty.create(GPoint(32, 32), 1));
        fresh.setMapMode(GMapMode(loMetricMappingMode));
        EXPECT_EQ(0, empty.draw(fresh, GPoint(0, 0)));
        EXPECT_EQ(MM_LOMETRIC, GetMapMode(fresh));
    }
    host->shutDownWindow();
}
