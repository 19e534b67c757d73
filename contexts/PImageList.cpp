#include "contexts/PImageList.h"

#include "contexts/GContext.h"
#include "graphics/GMapMode.h"

#include <new>

namespace {

// Creation flags: 16 colours for an empty list; with masks, or the device's colours.
constexpr unsigned int emptyListFlags = ILC_COLOR4;
constexpr unsigned int maskedListFlags = ILC_MASK;
constexpr unsigned int plainListFlags = 0;
// Tiles are laid out with this gap between them, in logical units.
constexpr double tileGap = 20.0;

// The platform's image-list calls take device pixels: the device is in MM_TEXT for the scope.
class PixelMapping {
public:
    explicit PixelMapping(GDevice &device) : device(device), saved(device.getMapMode())
    {
        device.setMapMode(GMapMode(textMappingMode));
    }
    ~PixelMapping() { device.setMapMode(saved); }
    PixelMapping(PixelMapping const &) = delete;
    PixelMapping &operator=(PixelMapping const &) = delete;

private:
    GDevice &device;
    GMapMode saved;
};

} // namespace

ImageListHandle::~ImageListHandle()
{
    if (handle && owned)
        ImageList_Destroy(handle);
}

PImageList::PImageList() = default;

PImageList::PImageList(PImageList const &other) = default;

PImageList &PImageList::operator=(PImageList const &other)
{
    if (this != &other)
        shared = other.shared;
    return *this;
}

PImageList::~PImageList() = default;

PImageList &PImageList::operator=(HIMAGELIST &list)
{
    ImageListHandle *record = new (std::nothrow) ImageListHandle{list, 1};
    if (!record)
        ImageList_Destroy(list);
    shared.reset(record);
    return *this;
}

int PImageList::create(GPoint const &size, PList<GBitmap> &images, PList<GBitmap> *masks)
{
    const int count = static_cast<int>(images.length());
    HIMAGELIST list = ImageList_Create(truncateCoord(size.xVal()), truncateCoord(size.yVal()),
                                       masks ? maskedListFlags : plainListFlags, count, count);
    if (!list)
        return imageListNotCreated;
    *this = list;
    if (!handle())
        return imageListMissing;
    for (int i = 0; i < count; ++i) {
        // A list of masks shorter than the images gives the rest no mask.
        GBitmap *mask = masks && i < static_cast<int>(masks->length()) ? &(*masks)(i) : nullptr;
        if (addImage(images(i), mask) == imageListAddFailed)
            return imageListAddFailed;
    }
    return imageListDone;
}

int PImageList::create(GPoint const &size, unsigned int growBy)
{
    HIMAGELIST list = ImageList_Create(truncateCoord(size.xVal()), truncateCoord(size.yVal()), emptyListFlags,
                                       0, static_cast<int>(growBy));
    if (!list)
        return imageListNotCreated;
    *this = list;
    return handle() ? imageListDone : imageListMissing;
}

int PImageList::addImage(GBitmap const &image, GBitmap *mask)
{
    if (!handle())
        return imageListMissing;
    if (ImageList_Add(handle(), image, mask ? static_cast<HBITMAP>(*mask) : nullptr) == -1)
        return imageListAddFailed;
    return imageListDone;
}

int PImageList::addImage(GBitmap const &image, GColor const &transparent)
{
    if (!handle())
        return imageListMissing;
    if (ImageList_AddMasked(handle(), image, static_cast<COLORREF>(static_cast<unsigned long>(transparent))) == -1)
        return imageListAddFailed;
    return imageListDone;
}

int PImageList::replace(int index, GBitmap const &image, GBitmap *mask)
{
    if (!handle())
        return imageListMissing;
    if (!ImageList_Replace(handle(), index, image, mask ? static_cast<HBITMAP>(*mask) : nullptr))
        return imageListReplaceFailed;
    return imageListDone;
}

int PImageList::length() const
{
    return handle() ? ImageList_GetImageCount(handle()) : 0;
}

// The platform's answer is not tested: an index outside the list gives a zero rectangle.
GRect PImageList::getImageSize(int index)
{
    IMAGEINFO info = {};
    if (handle())
        ImageList_GetImageInfo(handle(), index, &info);
    return GRect(info.rcImage);
}

int PImageList::draw(GContext &context, int index, GPoint const &point, int style)
{
    if (!handle())
        return imageListMissing;
    const GPoint at = context.logicalToDevice(point);
    PixelMapping pixels(context);
    ImageList_Draw(handle(), index, context, truncateCoord(at.xVal()), truncateCoord(at.yVal()),
                   static_cast<UINT>(style));
    return imageListDone;
}

// One row more than fits whole may be started. An area narrower than one tile has no column
// to lay images in, and draws nothing.
int PImageList::draw(GContext &context, GPoint const &origin)
{
    if (!handle())
        return imageListMissing;
    const GPoint start = context.logicalToDevice(origin);
    PixelMapping pixels(context);
    const int count = length();
    const GPoint area = context.getDeviceArea();
    const GRect tile = getImageSize(0);
    const double stepX = tile.width() + tileGap;
    const double stepY = tile.height() + tileGap;
    const int columns = truncateCoord((area.xVal() - start.xVal()) / stepX);
    const int rows = truncateCoord((area.yVal() - start.yVal()) / stepY);
    if (columns < 1)
        return imageListDone;
    for (int i = 0; i < count; ++i) {
        const int column = i % columns;
        const int row = i / columns;
        if (row > rows)
            break;
        ImageList_Draw(handle(), i, context, truncateCoord(stepX * column + start.xVal()),
                       truncateCoord(stepY * row + start.yVal()), ILD_TRANSPARENT);
    }
    return imageListDone;
}

HICON PImageList::extractIcon(int index)
{
    return handle() ? ImageList_GetIcon(handle(), index, 0) : nullptr;
}
