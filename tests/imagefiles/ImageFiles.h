// ImageFiles.h - image files made by the tests themselves, and PImage with its protected parts open.
//
//   TestPicture   a picture of a chosen depth, written as a .bmp file byte by byte
//   ProbePImage   PImage with isValid and the resize steps opened
//   TempPath      a file name in the temporary folder, deleted (with its ".bak") at the end
#pragma once

#include "TeskWin.h"

#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

// Pixel values are palette indices for 1, 4 and 8 bits and 0xRRGGBB for 24; rows top-down.
struct TestPicture {
    int width;
    int height;
    int bits;
    std::vector<unsigned long> values;
    std::vector<RGBQUAD> palette;

    // A deterministic pattern that uses every index the depth has.
    static TestPicture pattern(int width, int height, int bits)
    {
        TestPicture p{width, height, bits, {}, {}};
        const unsigned int entries = bits <= 8 ? 1u << bits : 0u;
        for (unsigned int i = 0; i < entries; ++i)
            p.palette.push_back(RGBQUAD{BYTE(i * 37 + 11), BYTE(255 - i * 13), BYTE(i * 91 + 5), 0});
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const unsigned long seed = static_cast<unsigned long>(x * 7 + y * 13 + x * y);
                p.values.push_back(entries ? seed % entries
                                           : ((seed * 2654435761u) & 0xFFFFFF) ^ (static_cast<unsigned long>(x) << 16));
            }
        return p;
    }

    // The colour at picture position (x, y), y down.
    COLORREF colour(int x, int y) const
    {
        const unsigned long v = values[static_cast<std::size_t>(y) * width + x];
        if (bits > 8)
            return RGB((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
        RGBQUAD const &q = palette[v];
        return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue);
    }

    std::vector<unsigned char> bmpBytes() const
    {
        const unsigned long stride = (static_cast<unsigned long>(width) * bits + 31) / 32 * 4;
        const unsigned long table = static_cast<unsigned long>(palette.size()) * 4;
        std::vector<unsigned char> file(14 + 40 + table + stride * height);
        auto put32 = [&](std::size_t at, unsigned long v) {
            for (int i = 0; i < 4; ++i)
                file[at + i] = static_cast<unsigned char>(v >> (8 * i));
        };
        file[0] = 'B';
        file[1] = 'M';
        put32(2, static_cast<unsigned long>(file.size()));
        put32(10, 54 + table);
        put32(14, 40);
        put32(18, static_cast<unsigned long>(width));
        put32(22, static_cast<unsigned long>(height));
        file[26] = 1;
        file[28] = static_cast<unsigned char>(bits);
        put32(34, stride * height);
        put32(38, 2834);
        put32(42, 2834);
        put32(46, static_cast<unsigned long>(palette.size()));
        for (std::size_t i = 0; i < palette.size(); ++i) {
            file[54 + 4 * i] = palette[i].rgbBlue;
            file[55 + 4 * i] = palette[i].rgbGreen;
            file[56 + 4 * i] = palette[i].rgbRed;
        }
        for (int y = 0; y < height; ++y) {
            unsigned char *row = &file[54 + table + stride * (height - 1 - y)];
            for (int x = 0; x < width; ++x) {
                const unsigned long v = values[static_cast<std::size_t>(y) * width + x];
                switch (bits) {
                case 1: row[x >> 3] |= static_cast<unsigned char>(v << (7 - (x & 7))); break;
                case 4: row[x >> 1] |= static_cast<unsigned char>(v << ((x & 1) ? 0 : 4)); break;
                case 8: row[x] = static_cast<unsigned char>(v); break;
                default:
                    row[3 * x] = static_cast<unsigned char>(v);
                    row[3 * x + 1] = static_cast<unsigned char>(v >> 8);
                    row[3 * x + 2] = static_cast<unsigned char>(v >> 16);
                }
            }
        }
        return file;
    }
};

inline bool writeBytes(std::string const &path, std::vector<unsigned char> const &bytes)
{
    FILE *f = std::fopen(path.c_str(), "wb");
    if (!f)
        return false;
    const bool ok = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    std::fclose(f);
    return ok;
}

inline std::vector<unsigned char> readBytes(std::string const &path)
{
    std::vector<unsigned char> bytes;
    FILE *f = std::fopen(path.c_str(), "rb");
    if (!f)
        return bytes;
    unsigned char chunk[4096];
    std::size_t n;
    while ((n = std::fread(chunk, 1, sizeof chunk, f)) > 0)
        bytes.insert(bytes.end(), chunk, chunk + n);
    std::fclose(f);
    return bytes;
}

inline bool exists(std::string const &path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

class TempPath {
public:
    explicit TempPath(char const *name)
    {
        char folder[MAX_PATH];
        GetTempPathA(MAX_PATH, folder);
        path = std::string(folder) + "teskwin_if_" + std::to_string(GetCurrentProcessId()) + "_" + name;
        remove();
    }
    ~TempPath() { remove(); }
    TempPath(TempPath const &) = delete;
    TempPath &operator=(TempPath const &) = delete;

    char const *c_str() const { return path.c_str(); }
    PString str() const { return PString(path.c_str()); }
    std::string path;

private:
    void remove() const
    {
        DeleteFileA(path.c_str());
        DeleteFileA((path + ".bak").c_str());
    }
};

class ProbePImage : public PImage {
public:
    using PImage::isValid;
    using PImage::resizeByDimension;
    using PImage::resizeByResolution;
    // The colour of picture position (x, y), y down, through the image side: palette entry
    // or the three stored bytes as blue, green, red.
    COLORREF colour(int x, int y)
    {
        BITMAPINFOHEADER const &h = *getHeader();
        const unsigned long stride = (static_cast<unsigned long>(h.biWidth) * h.biBitCount + 31) / 32 * 4;
        unsigned char const *at = pixels + stride * static_cast<unsigned long>(h.biHeight - 1 - y);
        if (h.biBitCount == 8) {
            const GColor c = palette().getEntry(at[x]);
            return RGB(c.getR(), c.getG(), c.getB());
        }
        at += 3 * x;
        return RGB(at[2], at[1], at[0]);
    }
};
