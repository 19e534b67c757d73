#include "events/PError.h"

#include "foundation/IErrorMessage.h"

#include <windows.h>

PError::PError(PErrorType type) : errorType(type), statusCode(0)
{
}

PError::PError(PError const &other) = default;

PError &PError::operator=(PError const &other) = default;

void PError::fatalError(PString const &text)
{
    LogErrorMessage(IErrorMessage(text, fatalErrorMessage));
    ExitProcess(1);
}

void PError::warningError(PString const &text)
{
    LogErrorMessage(IErrorMessage(text, warningErrorMessage));
}

void PError::reportError(PErrorType type)
{
    errorType = type;
}

int PError::isError() const
{
    return errorType != noError;
}

PErrorType PError::getError() const
{
    return errorType;
}

void PError::setStatusCode(int code)
{
    statusCode = code;
}

int PError::getStatusCode() const
{
    return statusCode;
}
