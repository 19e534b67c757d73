// HashedId.h - an integer identifier as a hash-table key.
//
//   HashedId   a signed 32-bit identifier that is its own hash.
#pragma once

#include "foundation/TeskWinExport.h"

class TESKWIN_API HashedId {
public:
    HashedId();
    explicit HashedId(int id);

    int hash() const;
    bool operator==(HashedId const &other) const;
    bool operator!=(HashedId const &other) const;

private:
    int id;
};
