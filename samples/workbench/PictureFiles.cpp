// PictureFiles.cpp - PNG, JPEG, TIFF, GIF and BMP files, through the library's images of the
// platform's imaging component.
#include "PictureFiles.h"

namespace {

char const *loadProblem(int result)
{
    switch (result) {
    case PImage::resultNoDib:
        return "there is not enough memory";
    case PImage::resultNoHandle:
    case PImage::resultBadHandle:
        return "the picture in it cannot be read";
    default:
        return "it is not a picture file that can be read";
    }
}

// A file the picture is handed over in; deleted when the transfer is done.
class TransferFile {
public:
    TransferFile() { PTemporaryFileServices::reserveTempFile(name); }
    TransferFile(TransferFile const &) = delete;
    TransferFile &operator=(TransferFile const &) = delete;
    ~TransferFile()
    {
        if (!name.isEmpty())
            DeleteFileA(name);
    }

    PString const &getName() const { return name; }

private:
    PString name;
};

} // namespace

char const *pictureFileFilter()
{
    return "Pictures (*.png;*.jpg;*.jpeg;*.tif;*.tiff;*.gif;*.bmp)\0*.png;*.jpg;*.jpeg;*.tif;*.tiff;*.gif;*.bmp\0"
           "PNG (*.png)\0*.png\0JPEG (*.jpg)\0*.jpg;*.jpeg\0TIFF (*.tif)\0*.tif;*.tiff\0GIF (*.gif)\0*.gif\0"
           "Bitmaps (*.bmp)\0*.bmp\0All files (*.*)\0*.*\0";
}

int loadPicture(PString const &path, Picture &picture, PString &problem)
{
    if (!fileExists(path)) {
        problem = PString("there is no such file");
        return GImage::resultImpossible;
    }
    PImage file;
    const int result = file.load(path);
    if (result != 0) {
        problem = PString(loadProblem(result));
        return result;
    }
    picture = Picture(file);
    return 0;
}

int savePicture(PString const &path, Picture &picture, PString &problem)
{
    // The picture reaches the imaging component as a .bmp file, which keeps its palette.
    TransferFile transfer;
    PImage image;
    if (transfer.getName().isEmpty() || picture.write(transfer.getName()) != GImage::resultOk ||
        image.load(transfer.getName()) != 0) {
        problem = PString("the picture could not be handed to the imaging component");
        return GImage::resultNotWritten;
    }
    const int result = image.save(path, PImage::formatByExtension);
    if (result != 0)
        problem = PString("the file could not be written in that format (GIF takes pictures of at most 256 colours)");
    return result;
}
