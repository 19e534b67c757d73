#include "graphics/GBitmap.h"

GBitmap::GBitmap() : shared(GBitmapBox::make(nullptr)) {}

GBitmap::GBitmap(unsigned char const *bits, int width, int height, unsigned int planes, unsigned int bitsPerPixel)
    : shared(GBitmapBox::make(CreateBitmap(width, height, planes, bitsPerPixel, bits)))
{
}

GBitmap::GBitmap(IConsoleApp *app, PString const &name) : GBitmap()
{
    load(app, name);
}

GBitmap::GBitmap(HBITMAP handle) : shared(GBitmapBox::make(handle)) {}

GBitmap::GBitmap(GBitmap const &other) : shared(other.shared) {}

GBitmap &GBitmap::operator=(GBitmap const &other)
{
    shared = other.shared;
    return *this;
}

int GBitmap::load(IConsoleApp *app, PString const &name)
{
    if (!app || name.isEmpty())
        return 0;
    return loadFrom(app->getInstance(), name, true, 0);
}

int GBitmap::load(IConsoleApp *app, int id)
{
    if (!app)
        return 0;
    return loadFrom(app->getInstance(), MAKEINTRESOURCEA(id & 0xFFFF), true, 0);
}

int GBitmap::loadEx(IConsoleApp *app, char const *name, unsigned int flags)
{
    return loadFrom(app ? app->getInstance() : nullptr, name, false, flags);
}

// A resource name goes to LoadBitmapA, anything else to LoadImageA with flags.
int GBitmap::loadFrom(HINSTANCE instance, char const *name, bool isResourceName, unsigned int flags)
{
    if (isValid() || !name)
        return 0;
    HBITMAP handle = isResourceName
                         ? LoadBitmapA(instance, name)
                         : static_cast<HBITMAP>(LoadImageA(instance, name, IMAGE_BITMAP, 0, 0, flags));
    if (!handle)
        return 0;
    shared.reset(GBitmapBox::make(handle));
    return 1;
}

GPoint GBitmap::getSize() const
{
    BITMAP description;
    if (getBitmap(&description) > 0)
        return GPoint(description.bmWidth, description.bmHeight);
    return GPoint(0, 0);
}

int GBitmap::isValid() const
{
    return shared.handle() != nullptr;
}

int GBitmap::getBitmap(tagBITMAP *description) const
{
    if (!description || !isValid())
        return -1;
    return GetObjectA(shared.handle(), sizeof *description, description);
}

int GBitmap::operator==(GBitmap const &other) const
{
    return shared.handle() == other.shared.handle();
}
