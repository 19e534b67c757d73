#include <gtest/gtest.h>

#include <windows.h>

#include "TeskWin.h"

#include <vector>

namespace {

PList<int> listOf(std::vector<int> const &values)
{
    PList<int> list;
    for (int v : values)
        list.add(v);
    return list;
}

std::vector<int> contents(PList<int> const &list)
{
    std::vector<int> values;
    for (int v : list)
        values.push_back(v);
    return values;
}

// The cursor stands on element `at` and knows its index: a read of index 1 walks from the
// cursor by its believed index, so a wrong index lands on the wrong element. That read
// leaves the cursor on index 1.
void expectCursor(PList<int> &list, std::vector<int> const &expected, unsigned int at)
{
    ASSERT_EQ(contents(list), expected);
    EXPECT_EQ(list.curElement(), expected[at]);
    if (expected.size() >= 3) {
        EXPECT_EQ(list(1), expected[1]) << "cursor index out of step";
    }
}

// Counts the element copies alive and made, to show what relinks and what copies.
struct Counted {
    static int alive;
    static int copies;
    int value;
    explicit Counted(int value) : value(value) { ++alive; }
    Counted(Counted const &other) : value(other.value)
    {
        ++alive;
        ++copies;
    }
    ~Counted() { --alive; }
};
int Counted::alive = 0;
int Counted::copies = 0;

TEST(PList, IndexingWrapsAndMovesTheCursor)
{
    PList<int> list = listOf({10, 20, 30});
    EXPECT_EQ(list(3), 10);
    EXPECT_EQ(list(4), 20);
    EXPECT_EQ(list.curElement(), 20);
    list(5) = 33;
    EXPECT_EQ(list.curElement(), 33);

    const PList<int> &constant = list;
    EXPECT_EQ(constant[0], 10);
    EXPECT_EQ(list.curElement(), 10) << "the constant read moves the cursor too";

    // Walks both ways from the cursor land on the right elements.
    PList<int> longer = listOf({0, 1, 2, 3, 4, 5, 6, 7});
    for (unsigned int i : {1u, 2u, 5u, 6u, 3u, 4u, 2u, 1u, 6u})
        EXPECT_EQ(longer(i), static_cast<int>(i));

    PList<int> none;
    none.moveTo(3);
    EXPECT_EQ(none.length(), 0u);
}

TEST(PList, StepReturnsTellWhenTheHeadIsReached)
{
    PList<int> list = listOf({1, 2, 3});
    ASSERT_TRUE(list.first());
    EXPECT_TRUE(list.prev());
    expectCursor(list, {1, 2, 3}, 2);

    list(2);
    EXPECT_FALSE(list.next()) << "wrapped to the head";
    list.add(4);
    expectCursor(list, {1, 2, 3, 4}, 0);
    list.first();
    EXPECT_TRUE(list.next());
    EXPECT_EQ(list.curElement(), 2);

    PList<int> one = listOf({7});
    one.first();
    EXPECT_FALSE(one.prev());
    EXPECT_FALSE(one.next());

    PList<int> none;
    EXPECT_FALSE(none.first());
    EXPECT_FALSE(none.next());
    EXPECT_FALSE(none.prev());
}

TEST(PList, RemoveKeepsTheCursorInStep)
{
    // An index left at the old length would be invisible until the length changes again.
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

    list.remove(5); // no range test: wraps like following five links from the head
    expectCursor(list, {3, 4}, 1);

    list.remove(-1);
    expectCursor(list, {3}, 0);

    list.remove(-1);
    EXPECT_EQ(list.length(), 0u);
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
    expectCursor(list, {2}, 0);

    list.insert(1, 0);
    expectCursor(list, {1, 2}, 0);

    list.insert(3, list.length()); // before the head without becoming it: at the end
    expectCursor(list, {1, 2, 3}, 0);

    list(2);
    EXPECT_EQ(list.insert(25, -1), 25);
    expectCursor(list, {1, 2, 25, 3}, 0);

    list(1);
    list.insert(15, 1);
    expectCursor(list, {1, 15, 2, 25, 3}, 0);

    list.first();
    list.insert(0, -1); // before the head without becoming it: at the end
    expectCursor(list, {1, 15, 2, 25, 3, 0}, 0);
}

TEST(PList, CopyAssignmentAndSelfAssignment)
{
    PList<int> original = listOf({1, 2, 3});
    original(2);
    PList<int> copy(original);
    expectCursor(copy, {1, 2, 3}, 0);
    copy(0) = 100;
    EXPECT_EQ(original(0), 1);

    PList<int> target = listOf({9, 9});
    target = original;
    EXPECT_TRUE(target == original);
    EXPECT_FALSE(target != original);
    EXPECT_TRUE(copy != original);
    EXPECT_TRUE(PList<int>() == PList<int>());
    EXPECT_FALSE(listOf({1, 2}) == listOf({1, 2, 3}));

    target = target;
    EXPECT_EQ(target.length(), 0u) << "a list assigned to itself ends empty";
    target.add(4);
    expectCursor(target, {4}, 0);
}

TEST(PList, JoinAppendsAndLeavesCursorAndHead)
{
    PList<int> list = listOf({1, 2, 3});
    list(1);
    PList<int> other = listOf({4, 5});
    list += other;
    expectCursor(list, {1, 2, 3, 4, 5}, 1);
    EXPECT_EQ(other.length(), 0u);
    other.add(6);
    list.join(other);
    EXPECT_EQ(contents(list), (std::vector<int>{1, 2, 3, 4, 5, 6}));

    PList<int> empty;
    PList<int> source = listOf({7, 8, 9});
    source(2);
    empty.join(source);
    expectCursor(empty, {7, 8, 9}, 0);

    empty.join(empty);
    empty.join(source);
    EXPECT_EQ(contents(empty), (std::vector<int>{7, 8, 9}));
}

TEST(PList, InjectSplicesBeforeTheGivenPlace)
{
    PList<int> list = listOf({1, 2, 3, 4});
    list(2);
    PList<int> other = listOf({8, 9});
    list.inject(other, -1); // rotated to begin with the injected elements
    expectCursor(list, {8, 9, 3, 4, 1, 2}, 2);
    EXPECT_EQ(other.length(), 0u);

    list = listOf({1, 2, 3, 4});
    other = listOf({8, 9});
    list.inject(other, 0);
    expectCursor(list, {8, 9, 1, 2, 3, 4}, 2);

    list = listOf({1, 2, 3, 4});
    other = listOf({8, 9});
    list.inject(other, 2);
    expectCursor(list, {1, 2, 8, 9, 3, 4}, 4);

    list = listOf({1, 2, 3, 4});
    other = listOf({8, 9});
    list.inject(other, 4); // wraps to the head, which stays: at the end
    expectCursor(list, {1, 2, 3, 4, 8, 9}, 0);

    list = listOf({1, 2, 3, 4});
    other = listOf({8, 9});
    list.inject(other, 5); // beyond the length: the cursor's index stays right
    expectCursor(list, {1, 8, 9, 2, 3, 4}, 3);

    PList<int> empty;
    other = listOf({8, 9, 7});
    empty.inject(other, 2);
    expectCursor(empty, {8, 9, 7}, 0);
    empty.inject(other, 0);
    empty.inject(empty, -1);
    EXPECT_EQ(empty.length(), 3u);
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
    EXPECT_EQ(contents(list), (std::vector<int>{1, 3, 2, 4}));

    list(2);
    EXPECT_EQ(list.find(4), 3);
    EXPECT_EQ(list.find(5), -1);
    EXPECT_EQ(list.curElement(), 2) << "find leaves the cursor";

    std::vector<int> seen;
    list.forEach([](int v, void *data) { static_cast<std::vector<int> *>(data)->push_back(v); }, &seen);
    EXPECT_EQ(seen, contents(list));

    int calls = 0;
    int *found = list.firstThat(
        [](int v, void *data) {
            ++*static_cast<int *>(data);
            return v % 2 == 0 ? 1 : 0;
        },
        &calls);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(calls, 3) << "stops at the first hit";
    *found = 20;
    EXPECT_EQ(list.find(20), 2);
    EXPECT_EQ(list.firstThat([](int v, void *) { return v > 100 ? 1 : 0; }, nullptr), nullptr);
    EXPECT_EQ(list.curElement(), 20);
}

TEST(PList, ElementsAreBoxedAndRelinkedWithoutCopies)
{
    Counted::alive = Counted::copies = 0;
    {
        PList<Counted> list;
        Counted &kept = list.add(Counted(1));
        for (int i = 2; i <= 5; ++i)
            list.add(Counted(i));
        EXPECT_EQ(Counted::alive, 5);
        const int copiesBefore = Counted::copies;

        PList<Counted> other;
        other.add(Counted(6));
        other.add(Counted(7));
        list.insert(Counted(0), 0);
        list.remove(3);
        list.join(other);
        other.add(Counted(8));
        list.inject(other, -1);
        EXPECT_EQ(Counted::copies, copiesBefore + 4) << "only add and insert copy a value";
        EXPECT_EQ(Counted::alive, 8);
        EXPECT_EQ(kept.value, 1) << "a reference survives changes elsewhere";
        EXPECT_EQ(&list(2), &kept);

        list = list;
        EXPECT_EQ(Counted::alive, 0);
        list.add(Counted(9));
    }
    EXPECT_EQ(Counted::alive, 0) << "the destructor deletes every element";
}

TEST(PQueue, FirstInFirstOut)
{
    PQueue<int> queue;
    int value = 42;
    EXPECT_TRUE(queue.isEmpty());
    EXPECT_EQ(queue.deQueue(value), 0);
    EXPECT_EQ(value, 42);

    for (int v : {1, 2, 3}) {
        int in = v;
        queue.enQueue(in);
    }
    EXPECT_EQ(queue.deQueue(value), 1);
    EXPECT_EQ(value, 1);
    int four = 4;
    queue.enQueue(four);
    std::vector<int> out;
    while (queue.deQueue(value))
        out.push_back(value);
    EXPECT_EQ(out, (std::vector<int>{2, 3, 4}));
    EXPECT_TRUE(queue.isEmpty());
}

TEST(PCArray, FixedBlockOfRecords)
{
    PCArray<tagPOINT> points(10);
    ASSERT_EQ(points.length(), 10);
    for (int i = 0; i < 10; ++i)
        points(i) = tagPOINT{i, -i};
    tagPOINT *block = &points(0);
    points.reduceLength(3);
    EXPECT_EQ(points.length(), 3);
    EXPECT_EQ(&points(0), block) << "the memory stays";
    const PCArray<tagPOINT> &constant = points;
    EXPECT_EQ(constant[9].y, -9);

    EXPECT_EQ(PCArray<tagPOINT>(-1).length(), 0);
    EXPECT_EQ(PCArray<tagPOINT>(0x7fffffff).length(), 0) << "more bytes than the address space";
}

} // namespace
