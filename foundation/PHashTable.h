// PHashTable.h - a fixed-size hash table.
//
//   PHashTable<V, K>   maps keys K (with hash() and ==) to values V in a fixed number of
//                      buckets, each a list of pairs in order of adding. No rehashing.
#pragma once

#include "foundation/PList.h"

#include <new>

template <typename V, typename K>
class PHashTable {
    struct Pair {
        K key;
        V value;
    };
    using Bucket = PList<Pair>;

public:
    // The size of every table in the library: a prime.
    static constexpr int theStandardBucketCount = 211;

    // When the buckets cannot be had the table stays unusable: adds fail and finds find nothing.
    explicit PHashTable(int bucketCount) : bucketCount(bucketCount), buckets(allocateBuckets(bucketCount)) {}
    PHashTable(PHashTable const &other) : bucketCount(other.bucketCount), buckets(allocateBuckets(bucketCount))
    {
        copyBuckets(other);
    }
    PHashTable &operator=(PHashTable const &other)
    {
        if (this != &other) {
            delete[] buckets;
            bucketCount = other.bucketCount;
            buckets = allocateBuckets(bucketCount);
            copyBuckets(other);
        }
        return *this;
    }
    virtual ~PHashTable() { delete[] buckets; }

    // 0 when added; 1 when the key is already there, keeping its old value; -1 on an
    // unusable table.
    int add(V const &value, K const &key)
    {
        Bucket *bucket = bucketFor(key);
        if (!bucket)
            return -1;
        if (findIn(*bucket, key))
            return 1;
        bucket->add(Pair{key, value});
        return 0;
    }

    V const *lookup(K const &key) const
    {
        Pair const *pair = find(key);
        return pair ? &pair->value : nullptr;
    }
    V *lookup(K const &key)
    {
        Pair *pair = find(key);
        return pair ? &pair->value : nullptr;
    }

    // 0 with copies of the stored value and key; -1, outputs untouched, when absent.
    int lookupBucket(K const &key, V &value, K &storedKey) const
    {
        Pair const *pair = find(key);
        if (!pair)
            return -1;
        value = pair->value;
        storedKey = pair->key;
        return 0;
    }

    void remove(K const &key)
    {
        Bucket *bucket = bucketFor(key);
        if (!bucket)
            return;
        int index = 0;
        for (Pair const &pair : *bucket) {
            if (pair.key == key) {
                bucket->remove(index);
                return;
            }
            ++index;
        }
    }

    void empty()
    {
        for (int i = 0; i < usableBuckets(); ++i)
            buckets[i].empty();
    }

    // Every key, bucket by bucket from 0, appended to list.
    void getKeyList(PList<K> &list) const
    {
        visitPairs([&list](Pair &pair) {
            list.add(pair.key);
            return false;
        });
    }

    // Pointers to every value, in the order of getKeyList.
    PList<V *> getContentList()
    {
        PList<V *> content;
        visitPairs([&content](Pair &pair) {
            content.add(&pair.value);
            return false;
        });
        return content;
    }

    // The first key of the first bucket that has one; null for an empty table.
    K const *getArbitraryKey() const
    {
        K const *key = nullptr;
        visitPairs([&key](Pair &pair) {
            key = &pair.key;
            return true;
        });
        return key;
    }

    // Calls function on every value in the order of getKeyList, until it returns non-zero.
    void traverse(int (*function)(V *))
    {
        visitPairs([function](Pair &pair) { return function(&pair.value) != 0; });
    }

private:
    static Bucket *allocateBuckets(int count) { return count > 0 ? new (std::nothrow) Bucket[count] : nullptr; }

    void copyBuckets(PHashTable const &other)
    {
        if (!buckets || !other.buckets)
            return;
        for (int i = 0; i < bucketCount; ++i)
            buckets[i] = other.buckets[i];
    }

    int usableBuckets() const { return buckets ? bucketCount : 0; }

    // The bucket is the magnitude of the signed hash modulo the bucket count. The magnitude
    // is taken unsigned on purpose, so that the lowest int also lands in range.
    Bucket *bucketFor(K const &key) const
    {
        if (!buckets)
            return nullptr;
        const int hash = key.hash();
        const unsigned int magnitude = hash < 0 ? 0u - static_cast<unsigned int>(hash) : static_cast<unsigned int>(hash);
        return &buckets[magnitude % static_cast<unsigned int>(bucketCount)];
    }

    static Pair *findIn(Bucket &bucket, K const &key)
    {
        for (Pair &pair : bucket) {
            if (pair.key == key)
                return &pair;
        }
        return nullptr;
    }

    Pair *find(K const &key) const
    {
        Bucket *bucket = bucketFor(key);
        return bucket ? findIn(*bucket, key) : nullptr;
    }

    // Visits every pair, bucket by bucket from 0, until visit returns true.
    template <typename Visit>
    void visitPairs(Visit visit) const
    {
        for (int i = 0; i < usableBuckets(); ++i) {
            for (Pair &pair : buckets[i]) {
                if (visit(pair))
                    return;
            }
        }
    }

    int bucketCount;
    Bucket *buckets;
};
