// PStringResManager.h - texts from a module's string table, and double-byte aware strings.
//
//   GenericStringId      the library's own keys, which the application maps to string ids
//   PStringResManager    reads strings and formats messages from one module
//   getStringResManager  the process-wide manager, following the application's resources
//   LUtil, LUtilStd      tells lead bytes of double-byte text; the latter asks the platform
//   PMultiString         a PString that counts and indexes by character
#pragma once

#include "foundation/IConsoleApp.h"
#include "foundation/PList.h"
#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

#include <windows.h>

enum GenericStringId {
    GSFatalCaption = 0,
    GSWarningCaption = 1
};

// Failures come back as texts in place of the string: "String Resource Error! (<id>)",
// or "String Resource Error, No handle available." when there is no module.
class TESKWIN_API PStringResManager {
public:
    PStringResManager();
    // The application's resource module; with no application, the program's own module.
    PStringResManager(IConsoleApp *app);
    PStringResManager(HINSTANCE instance);
    PStringResManager(PStringResManager const &other) = default;
    PStringResManager &operator=(PStringResManager const &other);
    ~PStringResManager();

    // At most 4095 bytes of a string reach the result.
    PString get(int id);
    PString get(GenericStringId id);
    // The string with %1, %2 ... replaced by the arguments in list order; at most 98 are
    // passed. Blank if the platform cannot format it.
    PString getFormatMsg(int id, PList<PString> &arguments);
    PString getFormatMsg(GenericStringId id, PList<PString> &arguments);

private:
    int load(int id, PString &text) const;

    HINSTANCE handle;
};

// Each call first takes the console application's resource module, when it has one.
TESKWIN_API PStringResManager *getStringResManager();
TESKWIN_API void setStringResManager(IConsoleApp *app);

class TESKWIN_API LUtil {
public:
    virtual int isLeadByte(unsigned char byte) const = 0;

protected:
    ~LUtil() = default;
};

class TESKWIN_API LUtilStd : public LUtil {
public:
    // Asks the platform once for every byte value of the process's ANSI code page.
    LUtilStd();
    int isLeadByte(unsigned char byte) const override;
};

class TESKWIN_API PMultiString : public PString {
public:
    PMultiString();
    PMultiString(char const *text);
    PMultiString(PString const &text);
    PMultiString(PMultiString const &other);
    PMultiString &operator=(PMultiString const &other);
    ~PMultiString();

    // Characters, a double-byte character counting once; a trailing lead byte counts once.
    int length() const;
    // The character at index: a double-byte one with its lead byte in the high 8 bits.
    // 0 outside the text. Walks from the start on every call.
    unsigned int operator[](int index) const;
    PString getPString();
    void setPString(PString const &text);

    static LUtilStd theLanguageUtil;
};
