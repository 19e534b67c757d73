// The workbench's own image code: band-wise operations give the picture a whole run would,
// the operations table, and the octree fed with the channels in the order it reads them.
#include "../../samples/workbench/Operations.h"
#include "../../samples/workbench/Picture.h"
#include "../../samples/workbench/WorkbenchIds.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

Picture scene(unsigned long width, unsigned long height)
{
    Picture picture = Picture::trueColour(width, height);
    picture.paintScene(5);
    return picture;
}

bool samePixels(Picture &a, Picture &b)
{
    if (a.getWidth() != b.getWidth() || a.getHeight() != b.getHeight())
        return false;
    for (unsigned long y = 0; y < a.getHeight(); ++y)
        for (unsigned long x = 0; x < a.getWidth(); ++x)
            if (!(a.getPixel(y, x) == b.getPixel(y, x)))
                return false;
    return true;
}

} // namespace

TEST(WorkbenchPicture, EveryBandedOperationGivesWhatOneRunOverThePictureGives)
{
    // 203 rows: bands of 17, the last one short, so that every kind of seam is crossed.
    const Picture original = scene(97, 203);
    for (unsigned short command : {CM_BRIGHTER, CM_DARKER, CM_MEDIAN, CM_DARKEST, CM_BRIGHTEST, CM_SMOOTH, CM_SHARPEN,
                                   CM_EMBOSS, CM_EDGES}) {
        Operation const *operation = findOperation(command);
        ASSERT_NE(operation, nullptr) << command;
        ASSERT_TRUE(operation->banded) << operation->name;
        Picture whole(original), banded(original);
        ASSERT_EQ(operation->apply(whole), GImage::resultOk) << operation->name;
        int reports = 0, last = 0;
        ASSERT_EQ(runOperation(*operation, banded, [&](int percent) {
                      EXPECT_GT(percent, last);
                      last = percent;
                      ++reports;
                  }),
                  GImage::resultOk)
            << operation->name;
        EXPECT_EQ(last, 100) << operation->name;
        EXPECT_EQ(reports, 12) << operation->name;
        EXPECT_TRUE(samePixels(whole, banded)) << operation->name;
    }
}

TEST(WorkbenchPicture, APalettePictureRunsWholeAndAFixedPaletteRefusesTrueColour)
{
    Picture picture = scene(40, 30);
    Operation const *fixed = findOperation("fixed16");
    ASSERT_NE(fixed, nullptr);
    int reports = 0;
    EXPECT_EQ(runOperation(*fixed, picture, [&](int) { ++reports; }), resultNeedsPalette);
    EXPECT_EQ(reports, 0);
    EXPECT_TRUE(picture.isTrueColour());

    ASSERT_EQ(runOperation(*findOperation("octree16"), picture, [&](int) { ++reports; }), GImage::resultOk);
    EXPECT_FALSE(picture.isTrueColour());
    // A palette picture is not cut into bands: a start and an end are all it reports.
    reports = 0;
    EXPECT_EQ(runOperation(*findOperation("median"), picture, [&](int) { ++reports; }), GImage::resultOk);
    EXPECT_EQ(reports, 2);
    EXPECT_EQ(runOperation(*fixed, picture, [](int) {}), GImage::resultOk);
    EXPECT_LE(picture.numColors(), 16);
}

TEST(WorkbenchPicture, TheOctreePaletteKeepsTheColoursOfThePicture)
{
    // A picture half pure blue, half pure red: the palette must hold blue and red, not swap them.
    // setPixel writes red into the first byte, which a stored pixel holds blue in (the library's
    // reader and the drawing take the third byte as red): each colour is written reversed.
    Picture picture = Picture::trueColour(16, 8);
    for (unsigned long y = 0; y < 8; ++y)
        for (unsigned long x = 0; x < 16; ++x)
            picture.setPixel(y, x, x < 8 ? GColor(255, 0, 0) : GColor(0, 0, 255));
    ASSERT_TRUE(picture.getPixel(3, 2) == GColor(0, 0, 255));
    ASSERT_EQ(findOperation(CM_OCTREE_16)->apply(picture), GImage::resultOk);
    const GColor left = picture.getPixel(3, 2), right = picture.getPixel(3, 12);
    EXPECT_TRUE(left == GColor(0, 0, 255)) << int(left.getR()) << " " << int(left.getG()) << " " << int(left.getB());
    EXPECT_TRUE(right == GColor(255, 0, 0)) << int(right.getR()) << " " << int(right.getG()) << " " << int(right.getB());
}

TEST(WorkbenchPicture, TheSceneLooksLikeALandscapeAndNamesAreFound)
{
    Picture picture = scene(200, 150);
    const GColor sky = picture.getPixel(5, 20), lake = picture.getPixel(145, 100), hill = picture.getPixel(118, 10);
    EXPECT_GT(sky.getB(), sky.getR());
    EXPECT_GT(lake.getB(), lake.getR());
    EXPECT_GT(hill.getG(), hill.getB());
    EXPECT_GT(hill.getG(), hill.getR());

    EXPECT_EQ(findOperation("no such thing"), nullptr);
    EXPECT_EQ(findOperation(static_cast<unsigned short>(CM_TILE)), nullptr);
    for (unsigned short command = CM_GREY; command <= CM_THINNING; ++command)
        if (Operation const *operation = findOperation(command)) {
            EXPECT_EQ(findOperation(operation->name), operation);
            EXPECT_NE(std::strlen(operation->title), 0u);
        }
    EXPECT_STREQ(operationMessage(GImage::resultImpossible), "this operation does not apply to this picture");
}
