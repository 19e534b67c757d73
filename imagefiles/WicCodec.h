// WicCodec.h - files to and from the engine's DIBs through the platform's imaging component
// (library-internal).
//
//   wicDecode   the first frame of a PNG, JPEG, TIFF, GIF or BMP file, as a DIB
//   wicEncode   a DIB as PNG, JPEG, TIFF or GIF
#pragma once

#include "imagefiles/EngineDib.h"

#include <windows.h>

enum class WicContainer { png, jpeg, tiff, gif };

// keepPalette: palette files stay at their depth (2-bit ones become 8); otherwise 24 bits.
// A negative engine code on failure.
int wicDecode(void const *bytes, unsigned long size, bool keepPalette, EngineDib &out);
// The same from a file, read as the decoder goes; head is the file's first bytes.
int wicDecodeFile(wchar_t const *path, void const *head, unsigned long headSize, bool keepPalette, EngineDib &out);
// The engine's formats are told by this many first bytes.
constexpr unsigned long signatureBytes = 4;
// Writes the file at path; a negative engine code on failure.
int wicEncode(EngineDib const &dib, WicContainer container, wchar_t const *path);
