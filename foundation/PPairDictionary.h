// PPairDictionary.h - a two-way map.
//
//   PPairDictionary<A, B>   pairs of A and B, found from either side through two hash
//                           tables of the standard size.
#pragma once

#include "foundation/PHashTable.h"
#include "foundation/PList.h"

template <typename A, typename B>
class PPairDictionary {
public:
    PPairDictionary()
        : forward(PHashTable<B, A>::theStandardBucketCount), reverse(PHashTable<A, B>::theStandardBucketCount)
    {
    }

    // A key already present on either side keeps its old pair there; the count of pairs
    // rises all the same.
    void add(A const &a, B const &b)
    {
        forward.add(b, a);
        reverse.add(a, b);
        ++pairCount;
    }

    B const *get(A const &a) const { return forward.lookup(a); }
    A const *get(B const &b) const { return reverse.lookup(b); }

    // Removes a and its partner from both sides; -1 when a is absent.
    int remove(A const &a)
    {
        B const *found = forward.lookup(a);
        if (!found)
            return -1;
        const B b = *found;
        forward.remove(a);
        reverse.remove(b);
        --pairCount;
        return 0;
    }

    int numPairs() const { return pairCount; }

    // Appends every value and, in matching order, its key as the reverse side knows it.
    // Returns the number appended, or 0 at once when a value has no key on the reverse side.
    int getContentList(PList<A *> &keys, PList<B *> &values)
    {
        const PList<B *> content = forward.getContentList();
        int pairs = 0;
        for (B *b : content) {
            A *a = reverse.lookup(*b);
            if (!a)
                return 0;
            keys.add(a);
            values.add(b);
            ++pairs;
        }
        return pairs;
    }

private:
    PHashTable<B, A> forward;
    PHashTable<A, B> reverse;
    int pairCount = 0;
};
