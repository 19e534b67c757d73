// PictureFiles.h - reading and writing pictures in the file formats the library handles.
//
//   pictureFileFilter  the open and save dialogs' list of formats
//   loadPicture        a file into a picture; 0, or non-zero with the reason in words
//   savePicture        a picture into a file, in the format its extension names
#pragma once

#include "Picture.h"

#include <TeskWin.h>

char const *pictureFileFilter();
int loadPicture(PString const &path, Picture &picture, PString &problem);
int savePicture(PString const &path, Picture &picture, PString &problem);
