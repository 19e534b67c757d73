#include "imagefiles/WicCodec.h"

#include "foundation/PMemory.h"
#include "imagefiles/ImageEngine.h"

#include <objbase.h>
#include <wincodec.h>

#include <cstring>
#include <map>

namespace {

using namespace ImageEngine;

// Owns one reference to a COM interface.
template <class T>
class Com {
public:
    Com() : p(nullptr) {}
    ~Com()
    {
        if (p)
            p->Release();
    }
    Com(Com const &) = delete;
    Com &operator=(Com const &) = delete;
    T **out() { return &p; }
    T *operator->() const { return p; }
    T *get() const { return p; }

private:
    T *p;
};

// The process's factory, made on first use. COM is started on the calling thread when it
// isn't yet; the factory is kept for the life of the process, as releasing it while the
// process ends would outlive COM.
IWICImagingFactory *factory()
{
    static IWICImagingFactory *made = nullptr;
    if (!made) {
        const HRESULT started = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        (void)started; // S_FALSE and RPC_E_CHANGED_MODE both leave COM usable on this thread
        CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                         reinterpret_cast<void **>(&made));
    }
    return made;
}

// A codec of the component by its class. The class objects are kept for the life of the
// process, like the factory: asking the registry for them on every file costs more than a
// small picture's decoding.
template <class Interface>
HRESULT createCodec(CLSID const &codec, REFIID interfaceId, Interface **out)
{
    static std::map<CLSID const *, IClassFactory *> kept;
    IClassFactory *&classObject = kept[&codec];
    if (!classObject) {
        const HRESULT got = CoGetClassObject(codec, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                             reinterpret_cast<void **>(&classObject));
        if (FAILED(got))
            return got;
    }
    return classObject->CreateInstance(nullptr, interfaceId, reinterpret_cast<void **>(out));
}

int decodeFailure(HRESULT result)
{
    if (result == E_OUTOFMEMORY)
        return codeNoMemory;
    if (result == WINCODEC_ERR_COMPONENTNOTFOUND || result == WINCODEC_ERR_UNKNOWNIMAGEFORMAT)
        return codeNotAnImage;
    return codeCorrupt;
}

// Copies the frame's top-down rows straight into their bottom-up places in the DIB.
int copyRows(IWICBitmapSource *source, EngineDib &dib)
{
    const unsigned long stride = dib.stride();
    for (long y = 0; y < dib.height(); ++y) {
        const WICRect line{0, INT(y), INT(dib.width()), 1};
        const HRESULT copied = source->CopyPixels(&line, stride, stride, dib.row(dib.height() - 1 - y));
        if (FAILED(copied))
            return decodeFailure(copied);
    }
    return codeOk;
}

// The palette of an indexed frame into the DIB's table; entries beyond the file's stay black.
int copyPalette(IWICImagingFactory *wic, IWICBitmapFrameDecode *frame, IWICBitmapDecoder *decoder, EngineDib &dib)
{
    Com<IWICPalette> palette;
    if (FAILED(wic->CreatePalette(palette.out())))
        return codeNoMemory;
    if (FAILED(frame->CopyPalette(palette.get())) && FAILED(decoder->CopyPalette(palette.get())))
        return codeCorrupt;
    WICColor colours[256] = {};
    UINT count = 0;
    if (FAILED(palette->GetColors(256, colours, &count)))
        return codeCorrupt;
    const unsigned int room = EngineDib::colourCount(dib.depth());
    for (UINT i = 0; i < count && i < room; ++i) {
        const WICColor c = colours[i];
        dib.colours()[i] = RGBQUAD{BYTE(c), BYTE(c >> 8), BYTE(c >> 16), 0};
    }
    return codeOk;
}

// The frame's 2-bit indices, widened to one byte each.
int copyTwoBitRows(IWICBitmapSource *frame, EngineDib &dib)
{
    const unsigned long packedStride = (static_cast<unsigned long>(dib.width()) * 2 + 31) / 32 * 4;
    const unsigned long long size = packedStride * static_cast<unsigned long long>(dib.height());
    auto *packed = static_cast<unsigned char *>(PGlobalAlloc(static_cast<unsigned long>(size)));
    if (!packed)
        return codeNoMemory;
    const HRESULT copied = frame->CopyPixels(nullptr, packedStride, static_cast<UINT>(size), packed);
    if (SUCCEEDED(copied)) {
        for (long y = 0; y < dib.height(); ++y) {
            unsigned char const *from = packed + y * packedStride;
            unsigned char *to = dib.row(dib.height() - 1 - y);
            for (long x = 0; x < dib.width(); ++x)
                to[x] = (from[x >> 2] >> (6 - 2 * (x & 3))) & 3;
        }
    }
    PGlobalFree(packed);
    return SUCCEEDED(copied) ? codeOk : decodeFailure(copied);
}

// The decoder of the engine's five formats, told by the file's first bytes; null for any other.
// Asking for the decoder by name spares the component's search through every codec it knows.
CLSID const *decoderFor(unsigned char const *bytes, unsigned long size)
{
    struct Signature {
        unsigned char bytes[4];
        unsigned long length;
        CLSID const *decoder;
    };
    static const Signature signatures[] = {{{0x89, 'P', 'N', 'G'}, 4, &CLSID_WICPngDecoder},
                                           {{0xFF, 0xD8}, 2, &CLSID_WICJpegDecoder},
                                           {{'G', 'I', 'F', '8'}, 4, &CLSID_WICGifDecoder},
                                           {{'B', 'M'}, 2, &CLSID_WICBmpDecoder},
                                           {{'I', 'I', 0x2A, 0}, 4, &CLSID_WICTiffDecoder},
                                           {{'M', 'M', 0, 0x2A}, 4, &CLSID_WICTiffDecoder}};
    for (Signature const &s : signatures)
        if (size >= s.length && std::memcmp(bytes, s.bytes, s.length) == 0)
            return s.decoder;
    return nullptr;
}

struct IndexedForm {
    GUID const *format;
    int depth;
};

} // namespace

namespace {

// The first frame of a stream whose decoder the first bytes named.
int decodeStream(IWICStream *stream, CLSID const *decoderClass, bool keepPalette, EngineDib &out)
{
    IWICImagingFactory *wic = factory();
    Com<IWICBitmapDecoder> decoder;
    HRESULT result = createCodec(*decoderClass, IID_IWICBitmapDecoder, decoder.out());
    if (FAILED(result))
        return codeNotAnImage;
    result = decoder->Initialize(stream, WICDecodeMetadataCacheOnDemand);
    if (FAILED(result))
        return decodeFailure(result);
    Com<IWICBitmapFrameDecode> frame;
    result = decoder->GetFrame(0, frame.out());
    if (FAILED(result))
        return decodeFailure(result);
    UINT width = 0, height = 0;
    if (FAILED(frame->GetSize(&width, &height)) || width == 0 || height == 0)
        return codeCorrupt;
    if (width > maxSide || height > maxSide || static_cast<unsigned long long>(width) * height > maxPixels)
        return codeTooLarge;
    WICPixelFormatGUID format;
    if (FAILED(frame->GetPixelFormat(&format)))
        return codeCorrupt;

    static const IndexedForm indexed[] = {{&GUID_WICPixelFormat1bppIndexed, 1},
                                          {&GUID_WICPixelFormat2bppIndexed, 8},
                                          {&GUID_WICPixelFormat4bppIndexed, 4},
                                          {&GUID_WICPixelFormat8bppIndexed, 8}};
    EngineDib dib;
    int done = codeBadDepth;
    if (keepPalette) {
        for (IndexedForm const &form : indexed) {
            if (!IsEqualGUID(format, *form.format))
                continue;
            done = EngineDib::make(long(width), long(height), form.depth, dib);
            if (done == codeOk)
                done = copyPalette(wic, frame.get(), decoder.get(), dib);
            if (done == codeOk)
                done = IsEqualGUID(format, GUID_WICPixelFormat2bppIndexed) ? copyTwoBitRows(frame.get(), dib)
                                                                          : copyRows(frame.get(), dib);
            if (done != codeOk)
                return done;
            break;
        }
        if (dib.empty() && (IsEqualGUID(format, GUID_WICPixelFormatBlackWhite) ||
                            IsEqualGUID(format, GUID_WICPixelFormat8bppGray))) {
            // Grey files become palette images on a grey ramp.
            const int depth = IsEqualGUID(format, GUID_WICPixelFormatBlackWhite) ? 1 : 8;
            done = EngineDib::make(long(width), long(height), depth, dib);
            if (done != codeOk)
                return done;
            const unsigned int entries = EngineDib::colourCount(depth);
            for (unsigned int i = 0; i < entries; ++i) {
                const BYTE level = BYTE(i * 255 / (entries - 1));
                dib.colours()[i] = RGBQUAD{level, level, level, 0};
            }
            done = copyRows(frame.get(), dib);
            if (done != codeOk)
                return done;
        }
    }
    if (dib.empty()) {
        done = EngineDib::make(long(width), long(height), 24, dib);
        if (done != codeOk)
            return done;
        Com<IWICBitmapSource> converted;
        IWICBitmapSource *rows = frame.get();
        if (!IsEqualGUID(format, GUID_WICPixelFormat24bppBGR)) {
            result = WICConvertBitmapSource(GUID_WICPixelFormat24bppBGR, frame.get(), converted.out());
            if (FAILED(result))
                return decodeFailure(result);
            rows = converted.get();
        }
        done = copyRows(rows, dib);
        if (done != codeOk)
            return done;
    }
    double dpiX = 0, dpiY = 0;
    if (SUCCEEDED(frame->GetResolution(&dpiX, &dpiY)) && dpiX > 0 && dpiY > 0 && dpiX < 1e6 && dpiY < 1e6) {
        // Pixels per metre, to the nearest.
        dib.header()->biXPelsPerMeter = LONG(dpiX / 0.0254 + 0.5);
        dib.header()->biYPelsPerMeter = LONG(dpiY / 0.0254 + 0.5);
    }
    out = static_cast<EngineDib &&>(dib);
    return codeOk;
}

} // namespace

int wicDecode(void const *bytes, unsigned long size, bool keepPalette, EngineDib &out)
{
    IWICImagingFactory *wic = factory();
    if (!wic)
        return codeNoMemory;
    CLSID const *decoderClass = decoderFor(static_cast<unsigned char const *>(bytes), size);
    if (!decoderClass)
        return codeNotAnImage;
    Com<IWICStream> stream;
    if (FAILED(wic->CreateStream(stream.out())) ||
        FAILED(stream->InitializeFromMemory(static_cast<BYTE *>(const_cast<void *>(bytes)), size)))
        return codeNoMemory;
    return decodeStream(stream.get(), decoderClass, keepPalette, out);
}

int wicDecodeFile(wchar_t const *path, void const *head, unsigned long headSize, bool keepPalette, EngineDib &out)
{
    IWICImagingFactory *wic = factory();
    if (!wic)
        return codeNoMemory;
    CLSID const *decoderClass = decoderFor(static_cast<unsigned char const *>(head), headSize);
    if (!decoderClass)
        return codeNotAnImage;
    Com<IWICStream> stream;
    if (FAILED(wic->CreateStream(stream.out())))
        return codeNoMemory;
    if (FAILED(stream->InitializeFromFilename(path, GENERIC_READ)))
        return codeCannotOpen;
    return decodeStream(stream.get(), decoderClass, keepPalette, out);
}

namespace {

CLSID const &encoderClass(WicContainer container)
{
    switch (container) {
    case WicContainer::png: return CLSID_WICPngEncoder;
    case WicContainer::jpeg: return CLSID_WICJpegEncoder;
    case WicContainer::tiff: return CLSID_WICTiffEncoder;
    default: return CLSID_WICGifEncoder;
    }
}

GUID const &dibFormat(int depth)
{
    switch (depth) {
    case 1: return GUID_WICPixelFormat1bppIndexed;
    case 4: return GUID_WICPixelFormat4bppIndexed;
    case 8: return GUID_WICPixelFormat8bppIndexed;
    default: return GUID_WICPixelFormat24bppBGR;
    }
}

int writeFailure(HRESULT result) { return result == E_OUTOFMEMORY ? codeNoMemory : codeCannotWrite; }

// The DIB as a bitmap of the component, top-down, with its palette.
int asWicBitmap(IWICImagingFactory *wic, EngineDib const &dib, IWICBitmap **bitmap)
{
    const unsigned long stride = dib.stride();
    HRESULT result = wic->CreateBitmap(UINT(dib.width()), UINT(dib.height()), dibFormat(dib.depth()),
                                       WICBitmapCacheOnLoad, bitmap);
    if (FAILED(result))
        return writeFailure(result);
    WICRect all{0, 0, INT(dib.width()), INT(dib.height())};
    Com<IWICBitmapLock> lock;
    if (FAILED((*bitmap)->Lock(&all, WICBitmapLockWrite, lock.out())))
        return codeNoMemory;
    UINT lockedSize = 0, lockedStride = 0;
    BYTE *data = nullptr;
    lock->GetStride(&lockedStride);
    if (FAILED(lock->GetDataPointer(&lockedSize, &data)) || lockedStride < stride)
        return codeNoMemory;
    for (long y = 0; y < dib.height(); ++y)
        std::memcpy(data + static_cast<unsigned long long>(y) * lockedStride, dib.row(dib.height() - 1 - y), stride);
    return codeOk;
}

int setPalette(IWICImagingFactory *wic, EngineDib const &dib, IWICBitmapFrameEncode *frame, IWICBitmap *bitmap)
{
    const unsigned int count = EngineDib::colourCount(dib.depth());
    if (count == 0)
        return codeOk;
    WICColor colours[256];
    for (unsigned int i = 0; i < count; ++i) {
        RGBQUAD const &q = dib.colours()[i];
        colours[i] = 0xFF000000u | (WICColor(q.rgbRed) << 16) | (WICColor(q.rgbGreen) << 8) | q.rgbBlue;
    }
    Com<IWICPalette> palette;
    if (FAILED(wic->CreatePalette(palette.out())) || FAILED(palette->InitializeCustom(colours, count)))
        return codeNoMemory;
    if (frame && FAILED(frame->SetPalette(palette.get())))
        return codeCannotWrite;
    if (bitmap && FAILED(bitmap->SetPalette(palette.get())))
        return codeNoMemory;
    return codeOk;
}

// Rows straight from the DIB when the encoder takes its depth, bottom row last.
int writeRows(EngineDib const &dib, IWICBitmapFrameEncode *frame)
{
    const unsigned long stride = dib.stride();
    for (long y = dib.height() - 1; y >= 0; --y) {
        const HRESULT result = frame->WritePixels(1, stride, stride, dib.row(y));
        if (FAILED(result))
            return writeFailure(result);
    }
    return codeOk;
}

} // namespace

int wicEncode(EngineDib const &dib, WicContainer container, wchar_t const *path)
{
    IWICImagingFactory *wic = factory();
    if (!wic)
        return codeNoMemory;
    Com<IWICStream> stream;
    if (FAILED(wic->CreateStream(stream.out())))
        return codeNoMemory;
    if (FAILED(stream->InitializeFromFilename(path, GENERIC_WRITE)))
        return codeCannotOpen;
    Com<IWICBitmapEncoder> encoder;
    HRESULT result = createCodec(encoderClass(container), IID_IWICBitmapEncoder, encoder.out());
    if (FAILED(result) || FAILED(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache)))
        return codeCannotWrite;
    Com<IWICBitmapFrameEncode> frame;
    Com<IPropertyBag2> options;
    if (FAILED(encoder->CreateNewFrame(frame.out(), options.out())))
        return codeCannotWrite;
    if (container == WicContainer::jpeg && options.get()) {
        PROPBAG2 option = {};
        option.pstrName = const_cast<LPOLESTR>(L"ImageQuality");
        VARIANT value;
        VariantInit(&value);
        value.vt = VT_R4;
        value.fltVal = 0.95f;
        options->Write(1, &option, &value);
    }
    if (FAILED(frame->Initialize(options.get())) || FAILED(frame->SetSize(UINT(dib.width()), UINT(dib.height()))))
        return codeCannotWrite;
    const double dpiX = dib.header()->biXPelsPerMeter * 0.0254, dpiY = dib.header()->biYPelsPerMeter * 0.0254;
    if (dpiX > 0 && dpiY > 0)
        frame->SetResolution(dpiX, dpiY);
    WICPixelFormatGUID format = dibFormat(dib.depth());
    if (FAILED(frame->SetPixelFormat(&format)))
        return codeCannotWrite;
    int done;
    if (IsEqualGUID(format, dibFormat(dib.depth()))) {
        done = setPalette(wic, dib, frame.get(), nullptr);
        if (done == codeOk)
            done = writeRows(dib, frame.get());
    } else if (IsEqualGUID(format, GUID_WICPixelFormat8bppIndexed) && EngineDib::colourCount(dib.depth())) {
        // Encoders of bytes only (GIF) get 1- and 4-bit rows widened, with the same palette.
        EngineDib bytes;
        done = dib.asBytes(bytes);
        if (done == codeOk)
            done = setPalette(wic, bytes, frame.get(), nullptr);
        if (done == codeOk)
            done = writeRows(bytes, frame.get());
    } else {
        // The encoder wants another form: convert through a bitmap of the component.
        Com<IWICBitmap> bitmap;
        done = asWicBitmap(wic, dib, bitmap.out());
        if (done == codeOk)
            done = setPalette(wic, dib, nullptr, bitmap.get());
        Com<IWICFormatConverter> converter;
        if (done == codeOk && (FAILED(wic->CreateFormatConverter(converter.out())) ||
                               FAILED(converter->Initialize(bitmap.get(), format, WICBitmapDitherTypeNone, nullptr,
                                                            0.0, WICBitmapPaletteTypeMedianCut))))
            done = codeCannotWrite;
        if (done == codeOk) {
            // An indexed target needs a palette: the DIB's own when it has one.
            if (EngineDib::colourCount(dib.depth()))
                setPalette(wic, dib, frame.get(), nullptr);
            result = frame->WriteSource(converter.get(), nullptr);
            if (FAILED(result))
                done = writeFailure(result);
        }
    }
    if (done != codeOk)
        return done;
    if (FAILED(frame->Commit()) || FAILED(encoder->Commit()))
        return codeCannotWrite;
    return codeOk;
}
