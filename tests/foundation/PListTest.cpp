#include <gtest/gtest.h>
#include <windows.h>

#include "TeskWin.h"

#include <vector>

namespace {

using Ints = std::vector<int>;

PList<int> listOf(Ints const &values)
{
    PList<int> list;
    for (int v : values)
        list.add(v);
    return list;
}

Ints contents(PList<int> const &list)
{
    Ints values;
    for (int v : list)
        values.push_back(v);
    return values;
}

// The cursor stands on element `at` and knows its index: reading index 1 walks from the
// cursor by its believed index, so a wrong index lands elsewhere. Leaves the cursor on 1.
void expectCursor(PList<int> &list, Ints const &expected, unsigned int at)
{
    ASSERT_EQ(contents(list), expected);
    EXPECT_EQ(list.curElement(), expected[at]);
    if (expected.size() >= 3) {
        EXPECT_EQ(list(1), expected[1]) << "cursor index out of step";
    }
}

// Counts live elements and copies, to show what relinks and what copies.
struct Counted {
    static int alive, copies;
    int value;
    explicit Counted(int value) : value(value) { ++alive; }
    Counted(Counted const &other) : value(other.value) { ++alive, ++copies; }
    ~Counted() { --alive; }
};
int Counted::alive = 0;
int Counted::copies = 0;

TEST(PList, IndexingWrapsAndStepsReportTheHead)
{
    PList<int> list = listOf({10, 20, 30});
    EXPECT_EQ(list(3), 10);
    EXPECT_EQ(list(4), 20);
    list(5) = 33;
    EXPECT_EQ(list.curElement(), 33);
    EXPECT_EQ(static_cast<PList<int> const &>(list)[0], 10);
    EXPECT_EQ(list.curElement(), 10) << "the constant read moves the cursor too";

    PList<int> longer = listOf({0, 1, 2, 3, 4, 5, 6, 7});
    for (unsigned int i : {1u, 2u, 5u, 6u, 3u, 4u, 2u, 1u, 6u})
        EXPECT_EQ(longer(i), static_cast<int>(i));

    ASSERT_TRUE(list.first());
    EXPECT_TRUE(list.prev());
    expectCursor(list, {10, 20, 33}, 2);
    list(2);
    EXPECT_FALSE(list.next()) << "wrapped to the head";
    list.add(40); // an index left at the old length would show only now
    expectCursor(list, {10, 20, 33, 40}, 0);

    PList<int> one = listOf({7});
    EXPECT_FALSE(one.prev());
    EXPECT_FALSE(one.next());
    PList<int> none;
    EXPECT_FALSE(none.first() || none.next() || none.prev());
    none.moveTo(3);
}

TEST(PList, RemoveKeepsTheCursorInStep)
{
    PList<int> list = listOf({1, 2, 3, 4, 5});
    list(4);
    list.remove(-1);
    list.add(5);
    expectCursor(list, {1, 2, 3, 4, 5}, 0);
    list(3);
    list.remove(1);
    expectCursor(list, {1, 3, 4, 5}, 2);
    list(2);
    list.removeByIndex(0);
    expectCursor(list, {3, 4, 5}, 1);
    list.remove(5); // no range test: wraps as five links from the head would
    expectCursor(list, {3, 4}, 1);
    list.remove(-1);
    expectCursor(list, {3}, 0);
    list.remove(-1);
    list.remove(0);
    EXPECT_EQ(list.length(), 0u);
    list.add(9);
    EXPECT_EQ(list.curElement(), 9);
}

TEST(PList, InsertPlacesAndResetsTheCursor)
{
    PList<int> list;
    list.insert(2, 4);
    list.insert(1, 0);
    list.insert(3, list.length()); // before the head without becoming it: at the end
    expectCursor(list, {1, 2, 3}, 0);
    list(2);
    EXPECT_EQ(list.insert(25, -1), 25);
    expectCursor(list, {1, 2, 25, 3}, 0);
    list.insert(15, 1);
    list.first();
    list.insert(0, -1);
    expectCursor(list, {1, 15, 2, 25, 3, 0}, 0);
}

TEST(PList, CopyAssignmentAndEquality)
{
    PList<int> original = listOf({1, 2, 3});
    original(2);
    PList<int> copy(original);
    expectCursor(copy, {1, 2, 3}, 0);
    copy(0) = 100;
    EXPECT_EQ(original(0), 1);
    EXPECT_TRUE(copy != original);

    PList<int> target = listOf({9, 9});
    target = original;
    EXPECT_TRUE(target == original);
    EXPECT_TRUE(PList<int>() == PList<int>());
    EXPECT_FALSE(listOf({1, 2}) == listOf({1, 2, 3}));
    target = target;
    EXPECT_EQ(target.length(), 0u) << "a list assigned to itself ends empty";
}

TEST(PList, JoinAndInjectRelink)
{
    PList<int> list = listOf({1, 2, 3});
    list(1);
    PList<int> other = listOf({4, 5});
    list += other;
    expectCursor(list, {1, 2, 3, 4, 5}, 1);
    EXPECT_EQ(other.length(), 0u);
    other.add(6);
    list.join(other);
    list.join(list);
    EXPECT_EQ(contents(list), (Ints{1, 2, 3, 4, 5, 6}));

    struct Case {
        int position;
        Ints expected;
        unsigned int cursor;
    };
    // The cursor starts on element 3; -1 splices before it and rotates the list.
    for (Case const &c : {Case{-1, {8, 9, 3, 4, 1, 2}, 2}, Case{0, {8, 9, 1, 2, 3, 4}, 2},
                          Case{2, {1, 2, 8, 9, 3, 4}, 4}, Case{4, {1, 2, 3, 4, 8, 9}, 0}}) {
        SCOPED_TRACE(c.position);
        list = listOf({1, 2, 3, 4});
        list(2);
        other = listOf({8, 9});
        list.inject(other, c.position);
        expectCursor(list, c.expected, c.cursor);
        EXPECT_EQ(other.length(), 0u);
    }
    // A position that wraps past the cursor's index leaves that index alone: the cursor
    // stands on element 2, now fourth, but still counts itself second.
    list = listOf({1, 2, 3, 4});
    list(2);
    other = listOf({8, 9});
    list.inject(other, 5);
    EXPECT_EQ(contents(list), (Ints{1, 8, 9, 2, 3, 4}));
    EXPECT_EQ(list.curElement(), 2);
    EXPECT_EQ(list(1), 2) << "no walk: the index says the cursor is there already";
    EXPECT_EQ(list(3), 4) << "two steps on from where the index thinks it is";

    for (bool join : {true, false}) {
        PList<int> empty;
        other = listOf({7, 8, 9});
        other(2);
        join ? empty.join(other) : empty.inject(other, 2);
        expectCursor(empty, {7, 8, 9}, 0);
        empty.inject(empty, -1);
        EXPECT_EQ(empty.length(), 3u);
    }
}

TEST(PList, MoveFindAndWalks)
{
    PList<int> list = listOf({1, 2, 3, 4});
    EXPECT_EQ(list.move(2, 2), 0);
    EXPECT_EQ(list.move(-1, 0), 0);
    EXPECT_EQ(list.move(0, 4), 0);
    EXPECT_EQ(list.move(0, 3), 1);
    expectCursor(list, {2, 3, 4, 1}, 0);
    EXPECT_EQ(list.move(3, 0), 1);
    EXPECT_EQ(list.move(1, 2), 1);
    EXPECT_EQ(contents(list), (Ints{1, 3, 2, 4}));

    list(2);
    EXPECT_EQ(list.find(4), 3);
    EXPECT_EQ(list.find(5), -1);
    Ints seen;
    list.forEach([](int v, void *data) { static_cast<Ints *>(data)->push_back(v); }, &seen);
    EXPECT_EQ(seen, contents(list));
    int calls = 0;
    int *found = list.firstThat(
        [](int v, void *data) {
            ++*static_cast<int *>(data);
            return v % 2 == 0 ? 1 : 0;
        },
        &calls);
    EXPECT_EQ(calls, 3) << "stops at the first hit";
    ASSERT_NE(found, nullptr);
    *found = 20;
    EXPECT_EQ(list.curElement(), 20) << "the walks leave the cursor where it was";
    EXPECT_EQ(list.firstThat([](int v, void *) { return v > 100 ? 1 : 0; }, nullptr), nullptr);
}

TEST(PList, ElementsStayPutAndRelinkingCopiesNothing)
{
    Counted::alive = Counted::copies = 0;
    {
        PList<Counted> list, other;
        Counted &kept = list.add(Counted(1));
        list.add(Counted(2));
        other.add(Counted(3));
        const int copiesBefore = Counted::copies;
        list.insert(Counted(0), 0);
        list.remove(2);
        list.join(other);
        other.add(Counted(4));
        list.inject(other, -1);
        EXPECT_EQ(Counted::copies, copiesBefore + 2) << "only insert and add copy";
        EXPECT_EQ(Counted::alive, 4);
        EXPECT_EQ(&list(2), &kept) << "references survive changes elsewhere";
        list.add(Counted(5));
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(PQueueAndPCArray, QueueOrderAndFixedBlock)
{
    PQueue<int> queue;
    int value = 42;
    EXPECT_EQ(queue.deQueue(value), 0);
    EXPECT_EQ(value, 42);
    for (int v : {1, 2, 3})
        queue.enQueue(v);
    Ints out;
    while (queue.deQueue(value))
        out.push_back(value);
    EXPECT_EQ(out, (Ints{1, 2, 3}));
    EXPECT_TRUE(queue.isEmpty());

    PCArray<tagPOINT> points(10);
    ASSERT_EQ(points.length(), 10);
    points(9) = tagPOINT{9, -9};
    tagPOINT *block = &points(0);
    points.reduceLength(3);
    EXPECT_EQ(points.length(), 3);
    EXPECT_EQ(&points(0), block);
    EXPECT_EQ(static_cast<PCArray<tagPOINT> const &>(points)[9].y, -9) << "the memory stays";
    EXPECT_EQ(PCArray<tagPOINT>(-1).length(), 0);
}

// Only a 32-bit address space is too small for an int count of 8-byte records.
TEST(PCArray, ByteCountPastTheAddressSpaceFails_i686)
{
    if (sizeof(void *) != 4)
        GTEST_SKIP() << "a 64-bit address space holds any int count of records";
    EXPECT_EQ(PCArray<tagPOINT>(0x20000001).length(), 0) << "its byte count wraps to 8";
}

} // namespace
