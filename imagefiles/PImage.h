// PImage.h - images held by the library's imaging engine.
//
//   PImage             a GImage whose picture lives behind an engine handle; loads and saves
//                      PNG, JPEG, TIFF, GIF and BMP, resizes, reduces colours and warps, and
//                      keeps its GImage side in step so that every image operation works on it
//   scanAcquireImage   acquisition from a scanner; there is no scanning device, so it always
//                      fails with -18 through decodeError
//
// Results: 0 success; the negative codes of decodeError, and from this class -1 no memory or
// no DIB, -12 a palette that doesn't match the image, -13 no valid handle, -19 a handle passed
// in that isn't valid. Format numbers of save: 0 by the path's extension (.bmp when unknown),
// 1 BMP, 2 PNG, 3 JPEG, 4 TIFF, 14 GIF (palette images only), 33 the picture-stream form.
#pragma once

#include "foundation/GColor.h"
#include "foundation/GPoint.h"
#include "foundation/PCoord.h"
#include "foundation/POutlines.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GBitmap.h"
#include "graphics/GPalette.h"
#include "imaging/GImage.h"

class PWindowObject;
struct tagBITMAPINFOHEADER;

class TESKWIN_API PImage : public GImage {
public:
    enum Result {
        resultNoDib = -1,
        resultPaletteMismatch = -12,
        resultNoHandle = -13,
        resultBadHandle = -19
    };
    enum Format {
        formatByExtension = 0,
        formatBmp = 1,
        formatPng = 2,
        formatJpeg = 3,
        formatTiff = 4,
        formatGif = 14,
        formatPicture = 33
    };
    static constexpr unsigned long noHandle = 0xffffffffUL;

    PImage();
    PImage(PImage const &other);
    // Nothing on self-assignment or from an image without a handle; the previous handle of
    // this image is not deleted.
    PImage &operator=(PImage const &other);
    ~PImage() override;

    int load(PString const &path) override;
    unsigned short numColors() const override;
    // True colour keeps the picture from before in a temporary file, for restoreBrightness.
    void adjustBrightness(double amount) override;
    void restoreBrightness() override;
    // Through the engine's optimised palette, not the image operations' octree.
    int octreeReduction(unsigned short n) override;
    // True-colour images are traced on a 256-colour shadow kept for the purpose.
    int outlineTrace(PCoord<double> const &point, POutlines &outline, unsigned char range) override;

    // Adopts a handle; -19 when it isn't valid, and the previous image comes back on failure.
    int setImageHandle(unsigned long handle);
    unsigned long &getImageHandle() { return imageHandle; }
    // As the engine reports them; -13 before any image was held.
    int getWidth() const { return imageWidth; }
    int getHeight() const { return imageHeight; }
    int getBitsPerPixel() const { return bitsPerPixel; }

    // An image file held in memory.
    int load(void *buffer, int size);
    int load(GBitmap const &bitmap);
    // Over an existing .tif or .dcx file a ".bak" copy is kept until the save succeeds.
    int save(PString const &path, int format);
    // A platform bitmap of size, or of the image's own size for the zero point.
    int makeBitmap(GBitmap *bitmap, GPoint const &size);
    // The palette's entries replace the image's; their number must be numColors().
    int setPalette(GPalette const &palette);
    // Maps the picture onto the quadrilateral of four points (top-left, top-right, bottom-left,
    // bottom-right), which are moved so that the smallest coordinates are 0; 3 without memory.
    int warp(PCoord<double> *points);

    // 1 when the engine and the image both scaled, otherwise 0.
    int scale(double factor);
    // By the resolution, or by the pixels when the resolution can't be used.
    bool resizeResolutionScale(double xFactor, double yFactor);

    PCoord<double> *getInternalImagePoints() { return internalImagePoints; }
    // Copies four points; null is ignored.
    void setInternalImagePoints(PCoord<double> *points);

    // The engine's top error, mapped to this class's negative codes; the engine's error stack
    // is emptied. The argument isn't used.
    static int decodeError(int unused);
    static bool isValidHandle(unsigned long handle);

protected:
    bool isValid() const { return isValidHandle(imageHandle); }
    bool resizeByResolution(double xFactor, double yFactor);
    bool resizeByDimension(double xFactor, double yFactor);

private:
    explicit PImage(unsigned long handle);

    // Brings the GImage side in line with the engine's DIB.
    int initGImage(tagBITMAPINFOHEADER *dib);
    // Dimensions and DIB from the engine; a decoded error on failure.
    int readBack(tagBITMAPINFOHEADER *&dib);
    void setCornerPoints();
    void dropBrightnessBackup();
    // The 256-colour shadow of a true-colour image, for tracing.
    int makeShadow();
    // Widens 1- and 4-bit DIBs to one byte a pixel in a new engine image.
    int expandToBytes(tagBITMAPINFOHEADER *&dib);

    unsigned long imageHandle;
    int imageWidth;
    int imageHeight;
    int bitsPerPixel;
    PImage *reducedImage;
    PString brightnessTempFile;
    PCoord<double> internalImagePoints[4];
};

TESKWIN_API int scanAcquireImage(PWindowObject *window, PImage *image);
