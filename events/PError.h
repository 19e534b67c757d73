// PError.h - the error mix-in of windows and applications.
//
//   PErrorType  what went wrong last; 0 is no error
//   PError      an error type and an exit status, with the two ways of telling an error
#pragma once

#include "foundation/PString.h"
#include "foundation/TeskWinExport.h"

// The numbers are fixed; 2 and 3 are reserved and never set.
enum PErrorType {
    noError = 0,
    childrenError = 1,
    noApplicationError = 4,
    registerClassError = 5
};

class TESKWIN_API PError {
public:
    // The status code is zeroed, so that a quit without a code of its own ends with 0.
    PError(PErrorType type = noError);
    PError(PError const &other);
    PError &operator=(PError const &other);
    // Not virtual, to keep the table as it is: derived objects are not deleted through a PError.
    ~PError() = default;

    // Table order is part of the design: these two stand first in every derived class.
    // Logs the text as fatal and ends the process with exit code 1.
    virtual void fatalError(PString const &text);
    // Logs the text as a warning and returns.
    virtual void warningError(PString const &text);

    // Records the error and nothing else: no log, no recovery.
    void reportError(PErrorType type);
    int isError() const;
    PErrorType getError() const;

    void setStatusCode(int code);
    int getStatusCode() const;

private:
    PErrorType errorType;
    int statusCode;
};
