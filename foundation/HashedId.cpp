#include "foundation/HashedId.h"

HashedId::HashedId() : id(0) {}

HashedId::HashedId(int id) : id(id) {}

int HashedId::hash() const
{
    return id;
}

bool HashedId::operator==(HashedId const &other) const
{
    return id == other.id;
}

bool HashedId::operator!=(HashedId const &other) const
{
    return id != other.id;
}
