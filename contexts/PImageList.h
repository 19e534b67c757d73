// PImageList.h - rows of same-sized images in one platform image list.
//
//   ImageListHandle   the record that copies of a PImageList share: the handle, and whether
//                     destroying the record destroys the list
//   ImageListResult   the result codes of the image-list operations
//   PImageList        the platform's image list as a value; draws one image or all of them
//                     as a grid of tiles
#pragma once

#include "foundation/GColor.h"
#include "foundation/GPoint.h"
#include "foundation/PList.h"
#include "foundation/TeskWinExport.h"
#include "graphics/GBitmap.h"
#include "graphics/GRect.h"
#include "graphics/GSharedHandle.h"

#include <windows.h>
#include <commctrl.h>

class GContext;

struct ImageListHandle {
    using Handle = HIMAGELIST;

    HIMAGELIST handle;
    int owned;

    // Destroys an owned list.
    ~ImageListHandle();
};

enum ImageListResult : int {
    imageListDone = 0,
    imageListNotCreated = 1,
    imageListAddFailed = 2,
    imageListReplaceFailed = 3,
    imageListMissing = 4
};

class TESKWIN_API PImageList {
public:
    // No list until create.
    PImageList();
    // Copies share the list; the last one destroys it.
    PImageList(PImageList const &other);
    PImageList &operator=(PImageList const &other);
    virtual ~PImageList();

    // A list of images of size, with masks when masks is given (the mask of each image at
    // its index); stops at the first image that cannot be added, keeping those before it.
    // A second create replaces this object's list only: other copies keep theirs.
    int create(GPoint const &size, PList<GBitmap> &images, PList<GBitmap> *masks);
    // An empty 16-colour list that grows by growBy.
    int create(GPoint const &size, unsigned int growBy);

    int addImage(GBitmap const &image, GBitmap *mask);
    // The transparent colour becomes the mask.
    int addImage(GBitmap const &image, GColor const &transparent);
    int replace(int index, GBitmap const &image, GBitmap *mask);

    // 0 with no list.
    int length() const;
    // The image's rectangle within the list's bitmap; all zeros with no list.
    GRect getImageSize(int index);

    // Every image, transparent, in a grid from origin with gaps of 20 units, as many columns
    // as fit the context; the first image gives the size of every tile.
    int draw(GContext &context, GPoint const &origin);
    // One image at a logical point, in one of the platform's ILD_ styles.
    int draw(GContext &context, int index, GPoint const &point, int style);

    // An icon of the image, owned by the caller; null with no list.
    HICON extractIcon(int index);

private:
    // Holds handle in a new record of its own.
    PImageList &operator=(HIMAGELIST &handle);
    HIMAGELIST handle() const { return shared.handle(); }

    GSharedHandle<ImageListHandle> shared;
};
