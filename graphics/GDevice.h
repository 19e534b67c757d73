// GDevice.h - the drawing surface.
//
//   GDevice        one platform device context with its selected pen, brush and font, the stated
//                  mapping mode and its reduced form; abstract in getDeviceArea
//   tagDeviceType  what TECHNOLOGY reports
//   GDeviceCaps    read-only view of a device's capabilities
//   RegionMode     how a path combines with the clip region
//   DrawTextStyle  the library's own style bits of drawText
//
// Raster drawing (bitmaps, device bits, metafiles, embedded objects, transfers between
// devices) is defined in GDeviceRaster.cpp.
//
// The device never obtains a handle itself: a derived class stores dc and, if the platform
// state should come back at the end, calls initObjects. Without a handle, selection does
// nothing and conversions give their neutral values.
#pragma once

#include "foundation/GColor.h"
#include "foundation/GPoint.h"
#include "foundation/PList.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GBitmap.h"
#include "graphics/GBrush.h"
#include "graphics/GDevicePolyline.h"
#include "graphics/GFont.h"
#include "graphics/GMapMode.h"
#include "graphics/GPalette.h"
#include "graphics/GPen.h"
#include "graphics/GRect.h"

#include <windows.h>

class GDeviceCaps;
class GImage;
class PImage;

// How a path combines with the clip region: the platform's RGN_ values.
enum RegionMode : int {
    RegionAnd = RGN_AND,
    RegionOr = RGN_OR,
    RegionXor = RGN_XOR,
    RegionDiff = RGN_DIFF,
    RegionCopy = RGN_COPY
};

// The library's own style bits for GDevice::drawText, all above the DT_ flags.
enum DrawTextStyle : unsigned int {
    TextBottomLine = 0x10000,   // bottom of a single line; replaces what came before
    TextRight = 0x40000,
    TextSingleLine = 0x80000,
    TextCentre = 0x100000,
    TextMiddleLine = 0x200000,  // vertically centred single line
    TextExpandTabs = 0x400000,
    TextNoClip = 0x800000,
    TextOneLine = 0x2000000,    // single line, as TextSingleLine
    TextWordBreak = 0x1000000   // overrides the single-line bits
};
struct IViewObject;
struct tagFORMATETC;

class TESKWIN_API GDevice {
public:
    GDevice();
    // Copies share the handle and the objects; both restore the saved state on destruction,
    // so a copy is for a short life inside the original's.
    GDevice(GDevice const &other) = default;
    GDevice &operator=(GDevice const &other) = default;
    virtual ~GDevice();

    virtual void setPen(GPen const &pen);
    // Width and height of the drawable area in device units.
    virtual GPoint getDeviceArea() = 0;

    // Saves the platform state of the handle, to be restored by the destructor.
    void initObjects();

    operator HDC() const { return dc; }
    HDC getDC() const { return dc; }
    GPen const &getPen() const { return pen; }
    GBrush const &getBrush() const { return brush; }
    GFont const &getFont() const { return font; }
    GMapMode const &getMapMode() const { return mapMode; }
    GDeviceCaps getDeviceCaps();

    // The background colour follows the brush's colour.
    void setBrush(GBrush const &brush);
    // Falls back to the system's character set when the platform took another face.
    void setFont(GFont const &font);
    // Realises the palette on a device of a window; the number of entries realised, or
    // all bits set when the device has no window. With select non-zero the palette is
    // selected for the realisation only.
    unsigned setPalette(GPalette const &palette, int select);

    // Drawing attributes: one platform call each, with no test for a handle.
    void setTextColor(GColor const &color);
    GColor getTextColor();
    void setTextCharacterSpacing(int spacing);
    int getTextCharacterSpacing();
    void setBackgroundColor(GColor const &color);
    GColor getBackgroundColor();
    void setBackgroundMode(enum backgroundMode mode);
    int getBackgroundMode();
    // Each raster operation on, or back to copying the pen.
    void setNOT(int on);
    void setXOR(int on);
    void setMASK(int on);

    // Logical to device units by the reduced form, truncating; the way every drawing
    // operation reaches the device.
    long newTranslateX(double x) const { return GDeviceMapMode::translateX(deviceMapMode, x); }
    long newTranslateY(double y) const { return GDeviceMapMode::translateY(deviceMapMode, y); }
    double newTranslateXinv(long x) const { return GDeviceMapMode::translateXinv(deviceMapMode, x); }
    double newTranslateYinv(long y) const { return GDeviceMapMode::translateYinv(deviceMapMode, y); }

    // Points and lengths through the reduced form; (0, 0) and the length itself without a handle.
    GPoint deviceToLogical(GPoint const &p);
    GPoint logicalToDevice(GPoint const &p);
    double lengthDeviceToLogical(double d);
    double lengthLogicalToDevice(double d);

    // The reduced form of a stated mapping, without a device.
    static GDeviceMapMode getGDeviceMapMode(GMapMode const &mode);
    void setMapMode(GMapMode const &mode);
    // A logical window over the whole drawable area: x from a at the left to b at the right,
    // y from d at the top to c at the bottom, equal scale on both axes.
    void setWindow(double a, double b, double c, double d);
    void getWindowCoords(double &a, double &b, double &c, double &d) const;

    // A clip rectangle in device units, untranslated.
    void setClipRegion(GRect const &rect);
    // An invalid region removes the clip.
    void setClipRegion(GRgn const &region);
    // A copy of the clip region, or an invalid region when there is none.
    GRgn getClipRegion();

    // Drives out drawing the platform has batched, by selecting brushes.
    void flush() const;

    // ---- Vector drawing, defined in GDeviceVector.cpp ------------------------------------
    // Points, rectangles and doubles are logical and go through newTranslateX/newTranslateY.
    // Vertex lists hold device integers and pass untouched; the boxes of the ...Boxed
    // operations are device units, untranslated. No handle is tested unless said.

    // Text metrics and fonts, in device units.
    GPoint getCellDimensions();
    short getExternalLeading();
    // (0, 0) without a handle.
    GPoint getStringSize(PString const &text);
    // The families of the default and then the symbol character set, raster fonts left out;
    // a vertical variant only when its plain family is not listed already.
    void getFontNames(PList<PString> &names);

    void moveTo(double x, double y);
    void moveTo(GPoint const &p);
    void lineTo(double x, double y);
    void lineTo(GPoint const &p);
    // In the colour the pen was made with.
    void setPixel(GPoint const &p);
    void setPixel(GPoint const &p, GColor const &color);

    // An outline by moveTo and four lineTo; nothing is filled.
    void rectangle(GRect const &rect);
    void rectangle(GPoint const &a, GPoint const &b);
    // Filled with the current brush, framed with the pen.
    void ellipse(GRect const &rect);
    // The radius is logical.
    void circle(GPoint const &centre, PFFloat const &radius);
    // The arc of the circle through the three points, from a to b by way of through.
    void circularArc(GPoint const &a, GPoint const &b, GPoint const &through);
    // Light on the left and top, dark on the bottom and right; the second pen stays selected.
    void draw3DRect(GRect const &rect, GColor const &first, GColor const &second);

    // With the device's own brush.
    void fillRectangle(GRect const &rect);
    // The current pen draws the frame.
    void fillRectangle(GRect const &rect, GBrush const &brush);
    void fillRectangle(GPoint const &a, GPoint const &b, GBrush const &brush);
    void fillPolygon(PList<GPoint> &points, GBrush const &brush);
    // Deliberately paints the union of the device's clip region and the region.
    void fillRgn(GRgn const &region, GBrush const &brush);
    void drawRgn(GRgn const &region, GBrush const &brush, int width, int height);

    // At most 16000 vertices go to one platform call; chunks are not joined.
    void polyline(GDevicePolyline const &list);
    void polylineTo(GDevicePolyline const &list);
    void polyPolyline(GDevicePolyPolyline const &list);
    void polyBezier(GDevicePolyBezier const &list);
    // The visible runs inside the box; the number of vertices passed to the platform.
    int polylineBoxed(GDevicePolyline const &list, GRect &box);
    void polyBezierBoxed(GDevicePolyBezier const &list, GRect &box);
    // The outline takes the brush's colour, not the pen's.
    void fillPolyBezier(GDevicePolyBezier const &list, GBrush const &brush);
    void fillPolyBezierBoxed(GDevicePolyBezier const &list, GRect &box, GBrush const &brush);
    // The bitmap at each vertex, placed by this device's scale and offsets; hot is in device units.
    void polyBitmap(GDevicePolyBitmap<double> const &list, GBitmap const &bitmap, GPoint const &hot, int rop);
    // The vertices through the translation and the platform's mapping, drawn in pixels; the
    // last argument is not used.
    void polyBitmap(GDevicePolyBitmap<long> const &list, GBitmap const &bitmap, GPoint const &hot, int rop, int unused);
    // Translates the caller's points in place, then PolyDraw.
    void polyDraw(tagPOINT *points, unsigned char *types, int n);

    void writeText(GPoint const &p, PString const &text);
    // flags in DT_ form, or the library's own style bits when any of the top 16 is set.
    void drawText(PString const &text, GRect &rect, unsigned int flags);
    // DrawStateA's result. The brush pointer goes to the platform as it stands.
    int drawState(GBrush *brush, DRAWSTATEPROC proc, LPARAM data, WPARAM wData, double x, double y, int cx,
                  int cy, unsigned int flags);

    // Paths: one platform call each, with its result.
    int beginPath();
    int endPath();
    int widenPath();
    int strokePath();
    int selectClipPath(enum RegionMode const &mode);
    // ---- End of vector drawing ------------------------------------------------------------

    // Raster drawing. Logical targets become a device position at their translated left and
    // top and a size of the absolute translated extents; source rectangles are in pixels.
    // The bitmap at a logical point, pixel for pixel; the bitmap keeps the device position.
    void draw(GBitmap &bitmap, GPoint const &pos, int rop);
    // The image's rows at a logical point through its own palette; leaves the background
    // mode transparent.
    void draw(GImage &image, GPoint const &pos);
    // StretchDIBits's result; -1 without a handle. Source rows count from the bottom.
    int zoomImage(GImage &image, GRect source, GRect target, int rop);
    // StretchBlt's result; -1 without a handle, 0 when no memory device could be made.
    int stretchImage(GBitmap &bitmap, GRect const &source, GRect const &target, int rop);
    // The same from another device; 0 when that one has no handle.
    int stretchImage(GDevice &device, GRect const &source, GRect const &target, int rop);
    // A copy with SRCCOPY; the image is not used.
    int stretchImage(GImage &image, GBitmap &bitmap, GRect const &source, GRect const &target);
    // Images of the imaging engine, defined with the image files: drawn by the engine at a
    // device point (untranslated) or into a logical target; nothing without a valid handle.
    void draw(PImage &image, GPoint const &pos);
    void zoomImage(PImage &image, GRect const &target);
    // As the GBitmap form with SRCCOPY; the image is not used.
    int stretchImage(PImage &image, GBitmap &bitmap, GRect const &source, GRect const &target);
    // The rectangle in device units, untranslated.
    void patternBlt(GRect const &rect, unsigned long rop);
    // from goes through the source device's own translation.
    void bitBlt(GRect const &target, GDevice &source, GPoint const &from, int rop);
    // The source's whole area at to, leaving out the transparent colour; the third argument is
    // not used.
    void transBlt(GPoint const &to, GDevice &source, GPoint const &unused, GColor const &transparent);
    // Top-down device-independent rows at device (0, 0), or at a logical x, y.
    void drawDIBits(void *bits, int width, int height, int planes, int bitCount);
    void drawDIBitsEx(void *bits, int x, int y, int width, int height, int planes, int bitCount);
    // Rows of the selected bitmap, top-down; lines copied, 0 on a refused argument.
    int getDIBits(void *bits, int width, int height, int planes, int bitCount);
    // Keeps the metafile's shape inside rect (device units); 0, or GetLastError.
    int drawEnhMetafile(HENHMETAFILE handle, GRect const &rect);
    // IViewObject::Draw into a logical rectangle; E_POINTER for a null object.
    long draw(IViewObject *object, tagFORMATETC *format, GRect &rect);
    // Height first. A bitmap compatible with this device, owned by the result.
    GBitmap createCompatibleBitmap(int height, int width);

private:
    // A logical target as device edges: left and top translated, the size by the target rule.
    RECT deviceTargetRect(GRect const &target) const;
    // draw(GBitmap &) on a printer goes through an engine image at five times the logical
    // size; defined with the image files.
    void drawOnPrinter(GBitmap &bitmap, GPoint const &pos, GPoint const &size, int rop);

protected:
    HDC dc;
    int savedState;
    TEXTMETRICA textMetrics;
    GMapMode mapMode;
    GDeviceMapMode deviceMapMode;
    GPen pen;
    GBrush brush;
    GFont font;
    GPoint reservedPoint;
};

// The values of GetDeviceCaps(TECHNOLOGY).
enum tagDeviceType : int {
    plotterDevice = DT_PLOTTER,
    rasterDisplayDevice = DT_RASDISPLAY,
    rasterPrinterDevice = DT_RASPRINTER,
    rasterCameraDevice = DT_RASCAMERA,
    characterStreamDevice = DT_CHARSTREAM,
    metafileDevice = DT_METAFILE,
    displayFileDevice = DT_DISPFILE
};

// Pairs come from two indexes, the first as x and the second as y.
class TESKWIN_API GDeviceCaps {
public:
    explicit GDeviceCaps(GDevice const &device) : dc(device.getDC()) {}

    GPoint getAspect() const { return pair(ASPECTX, ASPECTY); }
    int getAspectXY() const { return GetDeviceCaps(dc, ASPECTXY); }
    enum tagDeviceType getDeviceType() const { return tagDeviceType(GetDeviceCaps(dc, TECHNOLOGY)); }
    // Millimetres.
    GPoint getSize() const { return pair(HORZSIZE, VERTSIZE); }
    GPoint getRes() const { return pair(HORZRES, VERTRES); }
    GPoint getPixelsPerInch() const { return pair(LOGPIXELSX, LOGPIXELSY); }
    int getBitsPerPixel() const { return GetDeviceCaps(dc, BITSPIXEL); }
    int getColorPlanes() const { return GetDeviceCaps(dc, PLANES); }
    int getNumColors() const { return GetDeviceCaps(dc, NUMCOLORS); }
    int getNumPens() const { return GetDeviceCaps(dc, NUMPENS); }
    GPoint getPhysicalSize() const { return pair(PHYSICALWIDTH, PHYSICALHEIGHT); }
    GPoint getPhysicalOffset() const { return pair(PHYSICALOFFSETX, PHYSICALOFFSETY); }
    int getPDeviceSize() const { return GetDeviceCaps(dc, PDEVICESIZE); }
    int getClipCaps() const { return GetDeviceCaps(dc, CLIPCAPS); }
    int getSizePalette() const { return GetDeviceCaps(dc, SIZEPALETTE); }
    // The printable area's offset in the units of getSize; (0, 0) without a resolution.
    GPoint getOffset() const;

private:
    GPoint pair(int xIndex, int yIndex) const
    {
        return GPoint(GetDeviceCaps(dc, xIndex), GetDeviceCaps(dc, yIndex));
    }

    HDC dc;
};
