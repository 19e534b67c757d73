#include "imagefiles/PPicture.h"

#include "foundation/PGenericString.h"
#include "foundation/PMemory.h"
#include "foundation/PTemporaryFileServices.h"
#include "graphics/DibFormat.h"
#include "imagefiles/ImageEngine.h"

#include <cstring>
#include <new>

namespace Engine = ImageEngine;

struct PictureImpl {
    PictureImpl() : handle(Engine::noHandle), status(PPicture::statusOk) {}
    ~PictureImpl()
    {
        if (Engine::isValid(handle))
            Engine::deleteImage(handle);
    }
    PictureImpl(PictureImpl const &) = delete;
    PictureImpl &operator=(PictureImpl const &) = delete;

    bool valid() const { return Engine::isValid(handle); }

    unsigned long handle;
    int status;
};

namespace {

const int lengthBytes = 4;
const int paletteColours = 256;

// A temporary file of the pictures' prefix; empty when none could be made.
PString reservePictureFile()
{
    PTemporaryFileServices::setDefaultPrefix("PPic");
    PString name;
    PTemporaryFileServices::reserveTempFile(name);
    return name;
}

} // namespace

PPicture::PPicture() : impl(new (std::nothrow) PictureImpl) {}

PPicture::~PPicture() { delete impl; }

PPicture &PPicture::operator=(PPicture const &other)
{
    // Deliberate: the two pictures share one record from here on.
    impl = other.impl;
    return *this;
}

int PPicture::load(PString const &path)
{
    delete impl;
    impl = new (std::nothrow) PictureImpl;
    PString upper = path;
    upper.toUpper();
    char const *text = upper;
    char const *dot = std::strrchr(text, '.');
    if (dot && std::strcmp(dot, ".WPG") == 0)
        return -1;
    if (!impl)
        return -1;
    Engine::setLoadOption(Engine::optionKeepPalette, 1);
    Engine::Handle handle = Engine::noHandle;
    if (Engine::loadFile(PGenericString(path), handle) != Engine::codeOk) {
        // Unlike an image, the engine's own code is given out and its error stack is kept.
        const int code = Engine::topError();
        if (code == emptyFileCode)
            impl->status = statusLoadFailed;
        return code;
    }
    impl->handle = handle;
    return 0;
}

int PPicture::save(PString const &path, int format)
{
    if (!impl || !impl->valid())
        return -1;
    if (format == formatPaletteOnly) {
        int width = 0, height = 0, bits = 0;
        if (Engine::dimensions(impl->handle, width, height, bits) != Engine::codeOk)
            return -1;
        if (bits != 1 && bits != 4 && bits != 8 &&
            Engine::reduceOptimised(impl->handle, paletteColours) != Engine::codeOk)
            return -1;
    }
    return Engine::save(impl->handle, PGenericString(path), format) == Engine::codeOk ? 0 : -1;
}

void PPicture::write(PStream &stream)
{
    if (!impl)
        return;
    PString name = reservePictureFile();
    unsigned char *buffer = nullptr;
    long size = 0;
    if (save(name, Engine::formatPicture) >= 0) {
        DefaultStream file(name, std::ios_base::in | std::ios_base::binary, PFile::shareRead);
        if (file.good()) {
            file.seekg(0, std::ios_base::end);
            size = file.tellg();
            file.seekg(0, std::ios_base::beg);
            buffer = size > 0 ? static_cast<unsigned char *>(PGlobalAlloc(static_cast<unsigned long>(size))) : nullptr;
            if (buffer)
                file.read(buffer, static_cast<int>(size));
            if (!buffer || file.gcount() != size) {
                size = 0;
            }
            file.close();
        }
    }
    DeleteFileA(name);
    unsigned char length[lengthBytes];
    putLE32(length, static_cast<unsigned long>(size));
    stream.write(length, lengthBytes);
    if (buffer) {
        if (size > 0)
            stream.write(buffer, static_cast<int>(size));
        PGlobalFree(buffer);
    }
}

void PPicture::read(PStream &stream)
{
    delete impl;
    impl = new (std::nothrow) PictureImpl;
    unsigned char length[lengthBytes] = {};
    stream.read(length, lengthBytes);
    const long size = static_cast<long>(getLE32(length));
    if (stream.gcount() != lengthBytes || size <= 0 ||
        static_cast<unsigned long long>(size) > Engine::maxFileBytes)
        return;
    DibGlobalBlock buffer(PGlobalAlloc(static_cast<unsigned long>(size)));
    if (!buffer.get())
        return;
    stream.read(static_cast<unsigned char *>(buffer.get()), static_cast<int>(size));
    if (stream.gcount() != size)
        return;
    PString name = reservePictureFile();
    HANDLE file = CreateFileA(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        DWORD written = 0;
        const BOOL wrote = WriteFile(file, buffer.get(), static_cast<DWORD>(size), &written, nullptr);
        CloseHandle(file);
        if (wrote && written == static_cast<DWORD>(size))
            load(name);
    }
    DeleteFileA(name);
}

void PPicture::showPicture(HDC dc, int width, int height)
{
    if (!impl || !impl->valid())
        return;
    HBITMAP bitmap = nullptr;
    HPALETTE palette = nullptr;
    if (Engine::render(impl->handle, width, height, bitmap, &palette) == Engine::codeOk)
        Engine::paintBitmap(dc, bitmap, palette);
    if (bitmap)
        DeleteObject(bitmap);
    if (palette)
        DeleteObject(palette);
}

void PPicture::getDimension(int &width, int &height)
{
    width = 0;
    height = 0;
    int w = 0, h = 0, bits = 0;
    if (impl && Engine::dimensions(impl->handle, w, h, bits) == Engine::codeOk) {
        width = w;
        height = h;
    }
}

int PPicture::colorReduction(int method, int colors)
{
    if (!impl)
        return 0;
    int result;
    switch (method) {
    case reduceOptimised: result = Engine::reduceOptimised(impl->handle, colors); break;
    case reduceFixedTable: result = Engine::reduceFixed(impl->handle, colors); break;
    default: return 0;
    }
    return result == Engine::codeOk ? 1 : 0;
}

HBITMAP PPicture::makeBitmap(int width, int height)
{
    if (!impl || !impl->valid())
        return nullptr;
    HBITMAP bitmap = nullptr;
    return Engine::render(impl->handle, width, height, bitmap, nullptr) == Engine::codeOk ? bitmap : nullptr;
}

HBITMAP PPicture::makeBitmap()
{
    int width = 0, height = 0, bits = 0;
    if (!impl || Engine::dimensions(impl->handle, width, height, bits) != Engine::codeOk)
        return nullptr;
    return makeBitmap(width, height);
}

int PPicture::createFromBitmap(HBITMAP bitmap)
{
    if (!impl)
        return -1;
    Engine::Handle made = Engine::noHandle;
    if (Engine::createFromBitmap(bitmap, made) != Engine::codeOk)
        return -1;
    if (impl->valid())
        Engine::deleteImage(impl->handle);
    if (Engine::isValid(made))
        impl->handle = made;
    return 0;
}

bool PPicture::isValid() { return impl && impl->valid(); }

int PPicture::getStatus() { return impl ? impl->status : statusOk; }
