// PictureFiles.cpp - .bmp files, through the library's own reader and writer.
#include "PictureFiles.h"

#include <cstring>

namespace {

// The reader's results, in words.
char const *readProblem(int result)
{
    switch (result) {
    case 1:
        return "the reader takes pictures of 1, 4 and 8 bits with a colour table";
    case 2:
        return "this is not a .bmp file";
    case 3:
        return "there is not enough memory";
    case 4:
        return "the file ends early";
    case 6:
        return "the colour table could not be built";
    default:
        return "the file could not be read";
    }
}

bool hasExtension(PString const &path, char const *extension)
{
    const char *text = path;
    const size_t length = std::strlen(text), extensionLength = std::strlen(extension);
    return length >= extensionLength && _stricmp(text + length - extensionLength, extension) == 0;
}

} // namespace

char const *pictureFileFilter() { return "Bitmaps (*.bmp)\0*.bmp\0All files (*.*)\0*.*\0"; }

int loadPicture(PString const &path, Picture &picture, PString &problem)
{
    if (!fileExists(path)) {
        problem = PString("there is no such file");
        return GImage::resultImpossible;
    }
    GDiBitmap file;
    const int result = file.load(path);
    if (result != 0) {
        problem = PString(readProblem(result));
        return result;
    }
    picture = Picture(file);
    return 0;
}

int savePicture(PString const &path, Picture &picture, PString &problem)
{
    if (!hasExtension(path, ".bmp")) {
        problem = PString("this build writes .bmp files only");
        return GImage::resultNotWritten;
    }
    const int result = picture.write(path);
    if (result != 0)
        problem = PString("the file could not be written");
    return result;
}
