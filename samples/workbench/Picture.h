// Picture.h - the workbench's image.
//
//   Picture  a GImage that can run a neighbourhood operation band by band, so that the
//            program stays responsive between bands, and can paint a synthetic landscape
#pragma once

#include <TeskWin.h>

#include <functional>

class Picture : public GImage {
public:
    Picture() = default;
    explicit Picture(GImage const &image) : GImage(image) {}
    Picture(Picture const &other) = default;
    Picture &operator=(Picture const &other) = default;

    // An empty 24-bit picture; an empty Picture when memory is short.
    static Picture trueColour(unsigned long width, unsigned long height);
    // Fills the picture with a sunlit landscape of sky, clouds, mountains, hills, trees and a
    // lake; the seed varies the clouds and the ridges.
    void paintScene(unsigned int seed);

    // Exchanges the first and third byte of every true-colour pixel.
    void swapRedAndBlue();
    // Takes the pixels of the bitmap selected into a memory device of the picture's size.
    bool readDevice(GDevice &device);

    bool isEmpty() { return getHeader() == nullptr || getWidth() == 0 || getHeight() == 0; }
    int isTrueColour() { return !isEmpty() && numColors() == 0; }

    // Runs a 3 by 3 operation over bands of rows, each cut with one row of its neighbours so
    // that the result equals one run over the whole picture, and calls progress with the
    // percent done after each band. The operation's result; the first failure stops.
    int inBands(std::function<int(Picture &)> const &operation, std::function<void(int)> const &progress);

private:
    // Copies picture rows [from, to) of part, whose first row is picture row `partTop`.
    void copyRows(Picture &part, unsigned long partTop, unsigned long from, unsigned long to);
    unsigned char *pictureRow(unsigned long y) { return pixelAddr(static_cast<unsigned short>(getHeight() - 1 - y), 0); }
};
