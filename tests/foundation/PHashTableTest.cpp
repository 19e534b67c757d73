#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"

#include <climits>
#include <sstream>
#include <vector>

namespace {

using IdTable = PHashTable<int, HashedId>;

PList<HashedId> idsOf(std::vector<int> const &ids)
{
    PList<HashedId> list;
    for (int id : ids)
        list.add(HashedId(id));
    return list;
}

std::vector<int> valuesOf(PList<int *> const &pointers)
{
    std::vector<int> values;
    for (int *p : pointers)
        values.push_back(*p);
    return values;
}

HWND fakeHandle(std::uintptr_t value)
{
    return reinterpret_cast<HWND>(value);
}

TEST(PHashTable, AddLookupRemove)
{
    IdTable table(211);
    EXPECT_EQ(table.add(100, HashedId(5)), 0);
    EXPECT_EQ(table.add(200, HashedId(216)), 0) << "shares bucket 5";
    EXPECT_EQ(table.add(999, HashedId(5)), 1);
    ASSERT_NE(table.lookup(HashedId(5)), nullptr);
    EXPECT_EQ(*table.lookup(HashedId(5)), 100) << "the first value stays";
    ASSERT_NE(table.lookup(HashedId(216)), nullptr);
    EXPECT_EQ(*table.lookup(HashedId(216)), 200);
    EXPECT_EQ(table.lookup(HashedId(6)), nullptr);

    int value = -1;
    HashedId stored(-1);
    EXPECT_EQ(table.lookupBucket(HashedId(7), value, stored), -1);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(stored, HashedId(-1));
    EXPECT_EQ(table.lookupBucket(HashedId(216), value, stored), 0);
    EXPECT_EQ(value, 200);
    EXPECT_EQ(stored, HashedId(216));

    table.remove(HashedId(5));
    table.remove(HashedId(42));
    EXPECT_EQ(table.lookup(HashedId(5)), nullptr);
    EXPECT_NE(table.lookup(HashedId(216)), nullptr);

    IdTable copy(table);
    table.empty();
    EXPECT_EQ(table.getArbitraryKey(), nullptr);
    EXPECT_EQ(table.lookup(HashedId(216)), nullptr);
    ASSERT_NE(copy.lookup(HashedId(216)), nullptr) << "copies own their pairs";
    table = copy;
    table = table;
    EXPECT_EQ(*table.lookup(HashedId(216)), 200);
}

TEST(PHashTable, BucketsByMagnitudeOfHashInOrder)
{
    IdTable table(211);
    const std::vector<int> ids = {6, -5, 216, 5, 4, INT_MIN, 131};
    for (std::size_t i = 0; i < ids.size(); ++i)
        ASSERT_EQ(table.add(ids[i], HashedId(ids[i])), 0) << ids[i];

    // -5 lands in bucket 5, and the lowest int in bucket 2^31 mod 211 = 131.
    PList<HashedId> keys;
    table.getKeyList(keys);
    EXPECT_TRUE(keys == idsOf({4, -5, 216, 5, 6, INT_MIN, 131}));
    EXPECT_EQ(valuesOf(table.getContentList()), (std::vector<int>{4, -5, 216, 5, 6, INT_MIN, 131}));
    ASSERT_NE(table.getArbitraryKey(), nullptr);
    EXPECT_EQ(*table.getArbitraryKey(), HashedId(4));
    EXPECT_EQ(*table.lookup(HashedId(INT_MIN)), INT_MIN);

    static int visits;
    visits = 0;
    table.traverse([](int *value) {
        ++visits;
        *value = -*value / 2;
        return *value == -108 ? 1 : 0; // stops at 216
    });
    EXPECT_EQ(visits, 3);
    EXPECT_EQ(*table.lookup(HashedId(5)), 5) << "not visited";
}

TEST(PHashTable, WithoutBucketsIsInertNotUnsafe)
{
    for (int size : {0, -3}) {
        IdTable table(size);
        EXPECT_EQ(table.add(1, HashedId(1)), -1);
        EXPECT_EQ(table.lookup(HashedId(1)), nullptr);
        EXPECT_EQ(table.getArbitraryKey(), nullptr);
        EXPECT_EQ(table.getContentList().length(), 0u);
        table.remove(HashedId(1));
        table.traverse([](int *) {
            ADD_FAILURE() << "a table without buckets has no values";
            return 1;
        });
    }
}

TEST(PHashablePointer, HashAndComparisons)
{
    int objects[2] = {1, 2};
    const PHashablePointer<int> none;
    EXPECT_EQ(none.getPointer(), nullptr);
    EXPECT_EQ(none.hash(), 0);
    EXPECT_EQ(PHashablePointer<int>(reinterpret_cast<int *>(0x12345678)).hash(), -839905768)
        << "0x12345678 * 1741 truncated to 32 bits";

    PHashablePointer<int> first(&objects[0]);
    PHashablePointer<int> second(&objects[1]);
    EXPECT_TRUE(first == PHashablePointer<int>(&objects[0]));
    EXPECT_TRUE(first != second);
    EXPECT_TRUE(first == static_cast<int const *>(&objects[0]));
    EXPECT_TRUE(first != static_cast<int const *>(&objects[1]));
    EXPECT_TRUE(first < second);
    EXPECT_TRUE(second > first);
    EXPECT_FALSE(first > second);
    *second = 20;
    EXPECT_EQ(objects[1], 20);
    int *raw = second;
    EXPECT_EQ(raw, &objects[1]);

    // Address 2^31 hashes to the lowest int and must still find a bucket.
    PHashTable<int, PHashablePointer<int>> table(211);
    const PHashablePointer<int> lowest(reinterpret_cast<int *>(0x80000000u));
    ASSERT_EQ(lowest.hash(), INT_MIN);
    EXPECT_EQ(table.add(7, lowest), 0);
    EXPECT_EQ(table.add(8, first), 0);
    EXPECT_EQ(*table.lookup(lowest), 7);
    EXPECT_EQ(*table.lookup(PHashablePointer<int>(&objects[0])), 8);
}

struct PrintableHwnd : PHHwnd {
    using PHHwnd::PHHwnd;
    using PHHwnd::printOn;
};

TEST(PHHwnd, KeyOnAHandle)
{
    PrintableHwnd key(fakeHandle(0x1234));
    EXPECT_EQ(key.hash(), 0x1234);
    EXPECT_EQ(static_cast<HWND>(key), fakeHandle(0x1234));
    std::ostringstream text;
    key.printOn(text);
    EXPECT_EQ(text.str(), "4660");

    PHHwnd other;
    EXPECT_EQ(static_cast<HWND>(other), nullptr);
    other = fakeHandle(0x1234);
    EXPECT_TRUE(other == key);
    other = fakeHandle(0x5678);
    EXPECT_TRUE(other != key);
    EXPECT_TRUE(HashedId(3) != HashedId(4));
}

TEST(PPairDictionary, TwoWayLookupAndCounts)
{
    int objects[3] = {};
    const PHHwnd h1(fakeHandle(0x10)), h2(fakeHandle(0x20));
    const PHashablePointer<int> p1(&objects[0]), p2(&objects[1]), p3(&objects[2]);

    PPairDictionary<PHHwnd, PHashablePointer<int>> dictionary;
    dictionary.add(h1, p1);
    dictionary.add(h2, p2);
    ASSERT_NE(dictionary.get(h1), nullptr);
    EXPECT_EQ(*dictionary.get(h1), p1);
    ASSERT_NE(dictionary.get(p2), nullptr);
    EXPECT_EQ(*dictionary.get(p2), h2);
    EXPECT_EQ(dictionary.remove(PHHwnd(fakeHandle(0x30))), -1);
    EXPECT_EQ(dictionary.numPairs(), 2);

    auto copy = dictionary;
    EXPECT_EQ(dictionary.remove(h1), 0);
    EXPECT_EQ(dictionary.get(h1), nullptr);
    EXPECT_EQ(dictionary.get(p1), nullptr);
    EXPECT_EQ(dictionary.numPairs(), 1);
    EXPECT_NE(copy.get(p1), nullptr);
    EXPECT_EQ(copy.numPairs(), 2);

    // A second pair under the same key is counted though only the first is stored.
    PPairDictionary<PHHwnd, PHashablePointer<int>> doubled;
    doubled.add(h1, p1);
    doubled.add(h1, p3);
    EXPECT_EQ(doubled.numPairs(), 2);
    PList<PHHwnd *> keys;
    PList<PHashablePointer<int> *> values;
    EXPECT_EQ(doubled.getContentList(keys, values), 1);
    ASSERT_EQ(keys.length(), 1u);
    EXPECT_EQ(*keys(0), h1);
    EXPECT_EQ(*values(0), p1);

    // Two keys sharing a value: removing the first leaves a value with no reverse key,
    // which makes the whole list fail even after a good pair (bucket 8 comes first).
    PPairDictionary<PHHwnd, PHashablePointer<int>> shared;
    shared.add(PHHwnd(fakeHandle(0x08)), p2);
    shared.add(h1, p1);
    shared.add(h2, p1);
    EXPECT_EQ(shared.remove(h1), 0);
    PList<PHHwnd *> moreKeys;
    PList<PHashablePointer<int> *> moreValues;
    EXPECT_EQ(shared.getContentList(moreKeys, moreValues), 0);
}

} // namespace
