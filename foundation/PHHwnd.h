// PHHwnd.h - a window handle as a hash-table key.
//
//   PHHwnd   one HWND, hashed by its value, converting back to the handle.
#pragma once

#include "foundation/TeskWinExport.h"

#include <windows.h>

#include <iosfwd>

class TESKWIN_API PHHwnd {
public:
    PHHwnd();
    explicit PHHwnd(HWND handle);
    PHHwnd &operator=(HWND handle);
    operator HWND() const;

    int hash() const;
    bool operator==(PHHwnd const &other) const;
    bool operator!=(PHHwnd const &other) const;

protected:
    // Writes the handle's value as a decimal integer.
    void printOn(std::ostream &stream) const;

private:
    HWND handle;
};
