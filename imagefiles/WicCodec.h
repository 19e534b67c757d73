// WicCodec.h - files to and from the engine's DIBs through the platform's imaging component
// (library-internal).
//
//   wicDecode   the first frame of any file the component reads, as a DIB
//   wicEncode   a DIB as PNG, JPEG, TIFF or GIF
#pragma once

#include "imagefiles/EngineDib.h"

#include <windows.h>

enum class WicContainer { png, jpeg, tiff, gif };

// keepPalette: palette files stay at their depth (2-bit ones become 8); otherwise 24 bits.
// A negative engine code on failure.
int wicDecode(void const *bytes, unsigned long size, bool keepPalette, EngineDib &out);
// Writes the file at path; a negative engine code on failure.
int wicEncode(EngineDib const &dib, WicContainer container, wchar_t const *path);
