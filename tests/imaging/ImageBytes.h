// ImageBytes.h - small pictures given and read back as stored rows of bytes.
#pragma once

#include "imaging/TestImages.h"

#include <vector>

using Rows = std::vector<std::vector<int>>;

// An 8-bit image on a grey palette of 256 entries, whose index equals its grey; rows[0] is stored row 0.
inline ProbeImage indexImage(Rows const &rows)
{
    ProbeImage image(static_cast<long>(rows[0].size()), static_cast<long>(rows.size()), ProbeImage::greys(256));
    for (size_t r = 0; r < rows.size(); ++r)
        for (size_t c = 0; c < rows[r].size(); ++c)
            *image.at(r, c) = static_cast<unsigned char>(rows[r][c]);
    return image;
}

// A 24-bit image whose pixels are the given bytes, three a pixel.
inline ProbeImage tripleImage(Rows const &rows)
{
    ProbeImage image(static_cast<long>(rows[0].size() / 3), static_cast<long>(rows.size()), {});
    for (size_t r = 0; r < rows.size(); ++r)
        for (size_t c = 0; c < rows[r].size(); ++c)
            image.at(r, 0)[c] = static_cast<unsigned char>(rows[r][c]);
    return image;
}

// The pixel bytes of each stored row, padding left out.
inline Rows storedRows(ProbeImage &image)
{
    Rows rows;
    const long bytes = image.info().biWidth * (image.info().biBitCount / 8);
    for (long r = 0; r < image.info().biHeight; ++r) {
        unsigned char const *at = image.at(r, 0);
        rows.emplace_back(at, at + bytes);
    }
    return rows;
}

// The same grey in every byte of a 24-bit image of width by height.
inline Rows flatTriples(long width, long height, int grey)
{
    return Rows(height, std::vector<int>(width * 3, grey));
}
