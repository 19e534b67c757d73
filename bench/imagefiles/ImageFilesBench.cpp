// ImageFilesBench - load and save of a 4096 x 4096 picture in each format through PImage,
// against the same work done directly through the platform's imaging component: the file
// decoded into a buffer of rows, and a buffer of rows encoded into a file.
//   wine imagefiles_bench.exe [repeats [format]]   (format: PNG, JPEG, TIFF, GIF or BMP)
#include "TeskWin.h"
#include "BenchTimer.h"

#include <windows.h>
#include <wincodec.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

const int theSide = 4096;

struct Format {
    char const *name;
    char const *extension;
    int number;
    int bits;
    CLSID const *decoder;
    CLSID const *encoder;
    GUID const *pixelFormat;
};

IWICImagingFactory *factory()
{
    static IWICImagingFactory *made = nullptr;
    if (!made) {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                         reinterpret_cast<void **>(&made));
    }
    return made;
}

std::string tempPath(char const *name)
{
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    return std::string(folder) + "teskwin_bench_" + name;
}

// A .bmp of a smooth picture with some texture, of 8 (grey palette) or 24 bits.
void writeSource(std::string const &path, int bits)
{
    const unsigned long stride = (theSide * bits / 8 + 3) & ~3ul;
    const unsigned long table = bits == 8 ? 1024 : 0;
    std::vector<unsigned char> file(54 + table + stride * theSide);
    auto put32 = [&](std::size_t at, unsigned long v) {
        for (int i = 0; i < 4; ++i)
            file[at + i] = static_cast<unsigned char>(v >> (8 * i));
    };
    file[0] = 'B';
    file[1] = 'M';
    put32(2, static_cast<unsigned long>(file.size()));
    put32(10, 54 + table);
    put32(14, 40);
    put32(18, theSide);
    put32(22, theSide);
    file[26] = 1;
    file[28] = static_cast<unsigned char>(bits);
    put32(34, stride * theSide);
    put32(38, 2834);
    put32(42, 2834);
    put32(46, bits == 8 ? 256 : 0);
    for (unsigned long i = 0; i < table / 4; ++i)
        file[54 + 4 * i] = file[55 + 4 * i] = file[56 + 4 * i] = static_cast<unsigned char>(i);
    unsigned long state = 7;
    for (int y = 0; y < theSide; ++y) {
        unsigned char *row = &file[54 + table + stride * y];
        for (int x = 0; x < theSide * bits / 8; ++x) {
            state = state * 1664525u + 1013904223u;
            row[x] = static_cast<unsigned char>(((x + y) >> 4) + ((state >> 28) & 3));
        }
    }
    FILE *f = std::fopen(path.c_str(), "wb");
    std::fwrite(file.data(), 1, file.size(), f);
    std::fclose(f);
}

std::wstring wide(std::string const &text) { return std::wstring(text.begin(), text.end()); }

// Direct decoding: the file's first frame copied into top-down rows.
bool directLoad(std::string const &path, Format const &format, std::vector<unsigned char> &rows)
{
    IWICImagingFactory *wic = factory();
    IWICStream *stream = nullptr;
    IWICBitmapDecoder *decoder = nullptr;
    IWICBitmapFrameDecode *frame = nullptr;
    bool ok = SUCCEEDED(wic->CreateStream(&stream)) &&
              SUCCEEDED(stream->InitializeFromFilename(wide(path).c_str(), GENERIC_READ)) &&
              SUCCEEDED(CoCreateInstance(*format.decoder, nullptr, CLSCTX_INPROC_SERVER, IID_IWICBitmapDecoder,
                                         reinterpret_cast<void **>(&decoder))) &&
              SUCCEEDED(decoder->Initialize(stream, WICDecodeMetadataCacheOnDemand)) &&
              SUCCEEDED(decoder->GetFrame(0, &frame));
    if (ok) {
        const UINT stride = (theSide * format.bits / 8 + 3) & ~3u;
        // A fresh buffer each time, as the library must make one.
        std::vector<unsigned char>(static_cast<std::size_t>(stride) * theSide).swap(rows);
        ok = SUCCEEDED(frame->CopyPixels(nullptr, stride, UINT(rows.size()), rows.data()));
    }
    if (frame)
        frame->Release();
    if (decoder)
        decoder->Release();
    if (stream)
        stream->Release();
    return ok;
}

// Direct encoding of top-down rows, with a grey palette at 8 bits.
bool directSave(std::string const &path, Format const &format, std::vector<unsigned char> const &rows)
{
    IWICImagingFactory *wic = factory();
    IWICStream *stream = nullptr;
    IWICBitmapEncoder *encoder = nullptr;
    IWICBitmapFrameEncode *frame = nullptr;
    IPropertyBag2 *options = nullptr;
    WICPixelFormatGUID pixelFormat = *format.pixelFormat;
    bool ok = SUCCEEDED(wic->CreateStream(&stream)) &&
              SUCCEEDED(stream->InitializeFromFilename(wide(path).c_str(), GENERIC_WRITE)) &&
              SUCCEEDED(CoCreateInstance(*format.encoder, nullptr, CLSCTX_INPROC_SERVER, IID_IWICBitmapEncoder,
                                         reinterpret_cast<void **>(&encoder))) &&
              SUCCEEDED(encoder->Initialize(stream, WICBitmapEncoderNoCache)) &&
              SUCCEEDED(encoder->CreateNewFrame(&frame, &options)) && SUCCEEDED(frame->Initialize(options)) &&
              SUCCEEDED(frame->SetSize(theSide, theSide)) && SUCCEEDED(frame->SetPixelFormat(&pixelFormat));
    if (ok && format.bits == 8) {
        IWICPalette *palette = nullptr;
        WICColor colours[256];
        for (int i = 0; i < 256; ++i)
            colours[i] = 0xFF000000u | (i << 16) | (i << 8) | i;
        ok = SUCCEEDED(wic->CreatePalette(&palette)) && SUCCEEDED(palette->InitializeCustom(colours, 256)) &&
             SUCCEEDED(frame->SetPalette(palette));
        if (palette)
            palette->Release();
    }
    const UINT stride = (theSide * format.bits / 8 + 3) & ~3u;
    ok = ok && SUCCEEDED(frame->WritePixels(theSide, stride, UINT(rows.size()), const_cast<BYTE *>(rows.data()))) &&
         SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
    if (options)
        options->Release();
    if (frame)
        frame->Release();
    if (encoder)
        encoder->Release();
    if (stream)
        stream->Release();
    return ok;
}

double milliseconds(int repeats, bool (*body)(void *), void *context)
{
    bool ok = true;
    const double ns = nanosecondsPerCall(repeats, [&](int calls) {
        for (int i = 0; i < calls; ++i)
            ok = body(context) && ok;
    });
    return ok ? ns / 1e6 : -1;
}

} // namespace

int main(int argc, char **argv)
{
    const int repeats = argc > 1 ? std::atoi(argv[1]) : 3;
    const Format formats[] = {
        {"PNG", ".png", PImage::formatPng, 24, &CLSID_WICPngDecoder, &CLSID_WICPngEncoder, &GUID_WICPixelFormat24bppBGR},
        {"JPEG", ".jpg", PImage::formatJpeg, 24, &CLSID_WICJpegDecoder, &CLSID_WICJpegEncoder,
         &GUID_WICPixelFormat24bppBGR},
        {"TIFF", ".tif", PImage::formatTiff, 24, &CLSID_WICTiffDecoder, &CLSID_WICTiffEncoder,
         &GUID_WICPixelFormat24bppBGR},
        {"GIF", ".gif", PImage::formatGif, 8, &CLSID_WICGifDecoder, &CLSID_WICGifEncoder,
         &GUID_WICPixelFormat8bppIndexed},
        {"BMP", ".bmp", PImage::formatBmp, 24, &CLSID_WICBmpDecoder, &CLSID_WICBmpEncoder,
         &GUID_WICPixelFormat24bppBGR}};
    std::printf("%d x %d, best of %d, milliseconds\n", theSide, theSide, repeats);
    std::printf("%-5s %10s %10s %7s %10s %10s %7s\n", "", "load lib", "load WIC", "ratio", "save lib", "save WIC",
                "ratio");
    for (Format const &format : formats) {
        if (argc > 2 && lstrcmpiA(argv[2], format.name) != 0)
            continue;
        const std::string source = tempPath("source.bmp"), file = tempPath("file") + format.extension,
                          out = tempPath("out") + format.extension;
        writeSource(source, format.bits);
        PImage image;
        if (image.load(PString(source.c_str())) != 0 || image.save(PString(file.c_str()), format.number) != 0) {
            std::printf("%-5s could not be made\n", format.name);
            continue;
        }
        std::vector<unsigned char> rows;
        double best[4] = {1e300, 1e300, 1e300, 1e300};
        for (int r = 0; r < repeats; ++r) {
            struct Work {
                Format const *format;
                std::string const *file, *out;
                PImage *image;
                std::vector<unsigned char> *rows;
            } work{&format, &file, &out, &image, &rows};
            const double times[4] = {
                milliseconds(1, [](void *c) { auto &w = *static_cast<Work *>(c);
                    return w.image->load(PString(w.file->c_str())) == 0; }, &work),
                milliseconds(1, [](void *c) { auto &w = *static_cast<Work *>(c);
                    return directLoad(*w.file, *w.format, *w.rows); }, &work),
                milliseconds(1, [](void *c) { auto &w = *static_cast<Work *>(c);
                    return w.image->save(PString(w.out->c_str()), w.format->number) == 0; }, &work),
                milliseconds(1, [](void *c) { auto &w = *static_cast<Work *>(c);
                    return directSave(*w.out, *w.format, *w.rows); }, &work)};
            for (int i = 0; i < 4; ++i)
                best[i] = times[i] >= 0 && times[i] < best[i] ? times[i] : best[i];
        }
        std::printf("%-5s %10.1f %10.1f %7.3f %10.1f %10.1f %7.3f\n", format.name, best[0], best[1], best[0] / best[1],
                    best[2], best[3], best[2] / best[3]);
        DeleteFileA(source.c_str());
        DeleteFileA(file.c_str());
        DeleteFileA(out.c_str());
    }
    return 0;
}
