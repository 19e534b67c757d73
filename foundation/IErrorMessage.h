// IErrorMessage.h - error messages and the process's error log.
//
//   IErrorMessageType   fatal or warning
//   IErrorMessage       one log entry: a text and its type
//   LogErrorMessage     records an entry; getErrorLogCount, getErrorLogEntry and
//                       clearErrorLog read the log back
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

enum IErrorMessageType {
    fatalErrorMessage = 0,
    warningErrorMessage = 1
};

class TESKWIN_API IErrorMessage {
public:
    IErrorMessage(PString const &text, IErrorMessageType type);
    virtual ~IErrorMessage();

    PString const &getText() const;
    IErrorMessageType getType() const;

private:
    PString text;
    IErrorMessageType type;
};

// The log lives in memory and keeps the most recent entries, at most this many; older ones
// make way. It is meant for the thread that owns the windows.
enum { errorLogCapacity = 256 };

// Records a copy of the entry and returns; it never ends the process, whatever the type.
TESKWIN_API void LogErrorMessage(IErrorMessage const &message);
TESKWIN_API int getErrorLogCount();
// The entry at index, 0 being the oldest kept, or null outside the log. The pointer stays
// valid until the entry makes way or the log is cleared.
TESKWIN_API IErrorMessage const *getErrorLogEntry(int index);
TESKWIN_API void clearErrorLog();
