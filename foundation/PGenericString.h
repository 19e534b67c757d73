// PGenericString.h - a private, modifiable copy of a text for the platform or a library.
//
//   PGenericString   holds a copy of a PString and hands out its buffer
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

// Interfaces that take a plain char * may write to it; they get this copy, so the
// caller's PString stays as it was.
class TESKWIN_API PGenericString {
public:
    explicit PGenericString(PString const &text);
    virtual ~PGenericString();

    // The copied characters and a zero byte.
    operator char *();

private:
    PString text;
};
