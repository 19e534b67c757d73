#include "foundation/PGenericString.h"

PGenericString::PGenericString(PString const &text) : text(text)
{
}

PGenericString::~PGenericString() = default;

PGenericString::operator char *()
{
    return text;
}
