#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"

#include <climits>
#include <sstream>
#include <vector>

namespace {

using IdTable = PHashTable<int, HashedId>;

HWND fakeHandle(std::uintptr_t value)
{
    return reinterpret_cast<HWND>(value);
}

TEST(PHashTable, AddLookupRemoveCopy)
{
    IdTable table(211);
    EXPECT_EQ(table.add(100, HashedId(5)), 0);
    EXPECT_EQ(table.add(200, HashedId(216)), 0) << "shares bucket 5";
    EXPECT_EQ(table.add(999, HashedId(5)), 1);
    EXPECT_EQ(*table.lookup(HashedId(5)), 100) << "the first value stays";
    EXPECT_EQ(*table.lookup(HashedId(216)), 200);
    EXPECT_EQ(table.lookup(HashedId(6)), nullptr);

    int value = -1;
    HashedId stored(-1);
    EXPECT_EQ(table.lookupBucket(HashedId(7), value, stored), -1);
    EXPECT_TRUE(value == -1 && stored == HashedId(-1));
    EXPECT_EQ(table.lookupBucket(HashedId(216), value, stored), 0);
    EXPECT_TRUE(value == 200 && stored == HashedId(216));

    table.remove(HashedId(216));
    table.remove(HashedId(42));
    EXPECT_EQ(table.lookup(HashedId(216)), nullptr);
    IdTable copy(table);
    table.empty();
    EXPECT_EQ(table.getArbitraryKey(), nullptr);
    EXPECT_NE(copy.lookup(HashedId(5)), nullptr) << "copies own their pairs";
    table = copy;
    table = table;
    EXPECT_EQ(*table.lookup(HashedId(5)), 100);

    for (int size : {0, -3}) {
        IdTable unusable(size);
        EXPECT_EQ(unusable.add(1, HashedId(1)), -1);
        EXPECT_EQ(unusable.lookup(HashedId(1)), nullptr);
        EXPECT_EQ(unusable.getArbitraryKey(), nullptr);
        EXPECT_EQ(unusable.getContentList().length(), 0u);
    }
}

TEST(PHashTable, BucketsByMagnitudeOfHashInOrder)
{
    IdTable table(211);
    for (int id : {6, -5, 216, 5, 4, INT_MIN, 131})
        table.add(id, HashedId(id));

    // -5 lands in bucket 5, and the lowest int in bucket 2^31 mod 211 = 131.
    const std::vector<int> order = {4, -5, 216, 5, 6, INT_MIN, 131};
    PList<HashedId> keys, expected;
    table.getKeyList(keys);
    for (int id : order)
        expected.add(HashedId(id));
    EXPECT_TRUE(keys == expected);
    std::vector<int> values;
    for (int *v : table.getContentList())
        values.push_back(*v);
    EXPECT_EQ(values, order);
    EXPECT_EQ(*table.getArbitraryKey(), HashedId(4));

    static int visits;
    table.traverse([](int *value) {
        ++visits;
        *value = -*value / 2;
        return *value == -108 ? 1 : 0; // stops at 216
    });
    EXPECT_EQ(visits, 3);
    EXPECT_EQ(*table.lookup(HashedId(5)), 5) << "not visited";
}

struct PrintableHwnd : PHHwnd {
    using PHHwnd::PHHwnd;
    using PHHwnd::printOn;
};

TEST(HashKeys, PointerAndHandleKeys)
{
    int objects[2] = {1, 2};
    EXPECT_EQ(PHashablePointer<int>().getPointer(), nullptr);
    EXPECT_EQ(PHashablePointer<int>(reinterpret_cast<int *>(0x12345678)).hash(), -839905768)
        << "0x12345678 * 1741, truncated to 32 bits";
    PHashablePointer<int> first(&objects[0]), second(&objects[1]);
    EXPECT_TRUE(first == PHashablePointer<int>(&objects[0]) && first != second);
    EXPECT_TRUE(first == &objects[0] && first != static_cast<int const *>(&objects[1]));
    EXPECT_TRUE(first < second && second > first && !(first > second));
    *second = 20;
    EXPECT_EQ(objects[1], 20);

    // Address 2^31 hashes to the lowest int and must still find a bucket.
    PHashTable<int, PHashablePointer<int>> table(211);
    const PHashablePointer<int> lowest(reinterpret_cast<int *>(0x80000000u));
    ASSERT_EQ(lowest.hash(), INT_MIN);
    table.add(7, lowest);
    EXPECT_EQ(*table.lookup(lowest), 7);

    PrintableHwnd handle(fakeHandle(0x1234));
    EXPECT_EQ(handle.hash(), 0x1234);
    EXPECT_EQ(static_cast<HWND>(handle), fakeHandle(0x1234));
    std::ostringstream text;
    handle.printOn(text);
    EXPECT_EQ(text.str(), "4660");
    PHHwnd other;
    EXPECT_EQ(static_cast<HWND>(other), nullptr);
    other = fakeHandle(0x1234);
    EXPECT_TRUE(other == handle);
    EXPECT_TRUE(HashedId(3) != HashedId(4));
}

TEST(PPairDictionary, TwoWayLookupAndCounts)
{
    int objects[3] = {};
    const PHHwnd h1(fakeHandle(0x10)), h2(fakeHandle(0x20));
    const PHashablePointer<int> p1(&objects[0]), p2(&objects[1]), p3(&objects[2]);
    using Dictionary = PPairDictionary<PHHwnd, PHashablePointer<int>>;

    Dictionary dictionary;
    dictionary.add(h1, p1);
    dictionary.add(h2, p2);
    EXPECT_EQ(*dictionary.get(h1), p1);
    EXPECT_EQ(*dictionary.get(p2), h2);
    EXPECT_EQ(dictionary.remove(PHHwnd(fakeHandle(0x30))), -1);
    EXPECT_EQ(dictionary.numPairs(), 2);
    Dictionary copy = dictionary;
    EXPECT_EQ(dictionary.remove(h1), 0);
    EXPECT_TRUE(dictionary.get(h1) == nullptr && dictionary.get(p1) == nullptr);
    EXPECT_EQ(dictionary.numPairs(), 1);
    EXPECT_NE(copy.get(p1), nullptr);

    // A second pair under one key is counted though only the first is stored.
    Dictionary doubled;
    doubled.add(h1, p1);
    doubled.add(h1, p3);
    EXPECT_EQ(doubled.numPairs(), 2);
    PList<PHHwnd *> keys;
    PList<PHashablePointer<int> *> values;
    EXPECT_EQ(doubled.getContentList(keys, values), 1);
    ASSERT_EQ(keys.length(), 1u);
    EXPECT_TRUE(*keys(0) == h1 && *values(0) == p1);

    // Two keys sharing a value: removing one leaves a value without a reverse key, which
    // fails the whole list even after a good pair (bucket 8 comes first).
    Dictionary shared;
    shared.add(PHHwnd(fakeHandle(0x08)), p2);
    shared.add(h1, p1);
    shared.add(h2, p1);
    shared.remove(h1);
    EXPECT_EQ(shared.getContentList(keys, values), 0);
}

} // namespace
