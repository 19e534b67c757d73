// PList.h - the library's one sequence.
//
//   PList<T>   circular doubly-linked list with a built-in cursor. Every read by index moves
//              the cursor, so that a walk by rising index costs one step per element; adding,
//              joining and injecting relink nodes and never copy elements.
#pragma once

#include <new>

template <typename T>
class PList {
    // One element on the heap, so that a reference to it stays good until that element is
    // removed, whatever happens to the rest of the list. The element lives inside its node:
    // one allocation per element instead of two.
    struct Node {
        explicit Node(T const &value) : element(new (storage) T(value)), next(this), prev(this) {}
        ~Node() { element->~T(); }
        Node(Node const &) = delete;
        Node &operator=(Node const &) = delete;

        T *element;
        Node *next;
        Node *prev;
        alignas(T) unsigned char storage[sizeof(T)];
    };

public:
    // Walks the elements from the head without touching the cursor.
    template <typename Element>
    class Walk {
    public:
        Walk(Node *node, unsigned int remaining) : node(node), remaining(remaining) {}
        Element &operator*() const { return *node->element; }
        Element *operator->() const { return node->element; }
        Walk &operator++()
        {
            node = node->next;
            --remaining;
            return *this;
        }
        bool operator!=(Walk const &other) const { return remaining != other.remaining; }

    private:
        Node *node;
        unsigned int remaining;
    };
    using Iterator = Walk<T>;
    using ConstIterator = Walk<T const>;

    PList() = default;
    PList(PList const &other) { addAll(other); }
    // No test for self-assignment, on purpose: a list assigned to itself ends empty.
    PList &operator=(PList const &other)
    {
        empty();
        addAll(other);
        return *this;
    }
    virtual ~PList() { empty(); }

    void empty()
    {
        while (count != 0)
            remove(-1);
    }
    unsigned int length() const { return count; }

    Iterator begin() { return Iterator(head, count); }
    Iterator end() { return Iterator(head, 0); }
    ConstIterator begin() const { return ConstIterator(head, count); }
    ConstIterator end() const { return ConstIterator(head, 0); }

    // Cursor to the head; non-zero unless the list is empty.
    int first()
    {
        cursor = head;
        cursorIndex = 0;
        return count != 0;
    }

    // One step forward; non-zero unless the cursor has wrapped to the head.
    int next()
    {
        if (count == 0)
            return 0;
        cursor = cursor->next;
        cursorIndex = cursor == head ? 0 : cursorIndex + 1;
        return cursor != head;
    }

    // One step back; non-zero unless the cursor now stands on the head.
    int prev()
    {
        if (count == 0)
            return 0;
        cursor = cursor->prev;
        cursorIndex = cursorIndex == 0 ? count - 1 : cursorIndex - 1;
        return cursor != head;
    }

    // The list must not be empty.
    T &curElement() { return *cursor->element; }

    // Indices wrap modulo the length. The head and the last element are reached directly;
    // anything else by walking from where the cursor stands.
    void moveTo(unsigned int index) const
    {
        if (count == 0)
            return;
        const unsigned int target = index % count;
        if (target == 0) {
            cursor = head;
        } else if (target == count - 1) {
            cursor = head->prev;
        } else {
            for (; cursorIndex < target; ++cursorIndex)
                cursor = cursor->next;
            for (; cursorIndex > target; --cursorIndex)
                cursor = cursor->prev;
        }
        cursorIndex = target;
    }

    T &operator()(unsigned int index)
    {
        moveTo(index);
        return *cursor->element;
    }
    // Moves the cursor too, although constant.
    T const &operator[](unsigned int index) const
    {
        moveTo(index);
        return *cursor->element;
    }

    // Appends at the end; the cursor stays, unless the list was empty.
    T &add(T const &value)
    {
        Node *node = new Node(value);
        if (count == 0) {
            takeRing(node, 1);
        } else {
            spliceBefore(node, head);
            ++count;
        }
        return *node->element;
    }

    // Links the value before the element at position (-1: before the cursor); position 0
    // makes it the head. Since indices wrap, position length() puts it at the end.
    // Afterwards the cursor is at the head.
    virtual T &insert(T const &value, int position)
    {
        if (position != -1)
            moveTo(static_cast<unsigned int>(position));
        Node *node = new Node(value);
        if (count == 0)
            head = node;
        else
            spliceBefore(node, cursor);
        if (position == 0)
            head = node;
        cursor = head;
        cursorIndex = 0;
        ++count;
        return *node->element;
    }

    // Removes the element at the cursor (-1) or at index from the head. Indices are not
    // range-checked: they wrap around the ring, as following that many links would.
    void remove(int index)
    {
        if (count == 0)
            return;
        Node *doomed = cursor;
        unsigned int doomedIndex = cursorIndex;
        if (index != -1) {
            doomedIndex = static_cast<unsigned int>(index) % count;
            doomed = nodeAt(doomedIndex);
        }
        --count;
        if (doomed == cursor) {
            cursor = cursor->next;
            if (cursor == head)
                cursorIndex = 0;
        } else if (doomedIndex < cursorIndex) {
            --cursorIndex;
        }
        doomed->prev->next = doomed->next;
        doomed->next->prev = doomed->prev;
        if (doomed == head)
            head = count != 0 ? doomed->next : nullptr;
        if (count == 0)
            cursor = nullptr;
        delete doomed;
    }
    void removeByIndex(int index) { remove(index); }

    // Moves one element from one index to another; 0 unless both are in range and differ.
    int move(int from, int to)
    {
        if (from == to || !inRange(from) || !inRange(to))
            return 0;
        const T value = (*this)(static_cast<unsigned int>(from));
        remove(-1);
        insert(value, to);
        return 1;
    }

    // Index of the first element equal to value, else -1.
    int find(T const &value) const
    {
        int index = 0;
        for (T const &element : *this) {
            if (element == value)
                return index;
            ++index;
        }
        return -1;
    }

    // The next node and the length are read after each call, so the function may add.
    void forEach(void (*function)(T, void *), void *data)
    {
        Node *node = head;
        for (unsigned int i = 0; i < count; ++i) {
            function(*node->element, data);
            node = node->next;
        }
    }

    // The first element for which function returns non-zero, else null.
    T *firstThat(int (*function)(T, void *), void *data) const
    {
        Node *node = head;
        for (unsigned int i = 0; i < count; ++i) {
            if (function(*node->element, data))
                return node->element;
            node = node->next;
        }
        return nullptr;
    }

    bool operator==(PList const &other) const
    {
        if (count != other.count)
            return false;
        ConstIterator mine = begin();
        for (T const &element : other) {
            if (!(*mine == element))
                return false;
            ++mine;
        }
        return true;
    }
    bool operator!=(PList const &other) const { return !(*this == other); }

    // Moves all of other's nodes in before the element at position, leaving other empty.
    // Position -1 splices before the cursor and makes other's first element the head, so
    // the list is rotated to begin with other's elements; position 0 puts them first.
    void inject(PList &other, int position)
    {
        if (other.count == 0 || &other == this)
            return;
        if (count == 0) {
            takeRing(other.head, other.count);
        } else {
            if (position != -1)
                moveTo(static_cast<unsigned int>(position));
            spliceBefore(other.head, cursor);
            count += other.count;
            const bool headMoves = position == -1 || position == 0;
            if (headMoves)
                head = other.head;
            // Deliberate: a position past the cursor's index (one that wrapped) keeps the
            // index it had, so that it lags the cursor by other's length.
            if (position == -1 || static_cast<unsigned int>(position) <= cursorIndex)
                cursorIndex = indexAfterSplice(headMoves, other.count);
        }
        other.forget();
    }

    // Moves all of other's nodes to the end, leaving other empty; the cursor stays.
    void join(PList &other)
    {
        if (other.count == 0 || &other == this)
            return;
        if (count == 0) {
            takeRing(other.head, other.count);
        } else {
            spliceBefore(other.head, head);
            count += other.count;
        }
        other.forget();
    }
    PList &operator+=(PList &other)
    {
        join(other);
        return *this;
    }

private:
    // Links the whole ring that starts at ring in before node at.
    static void spliceBefore(Node *ring, Node *at)
    {
        Node *last = ring->prev;
        Node *before = at->prev;
        before->next = ring;
        ring->prev = before;
        last->next = at;
        at->prev = last;
    }

    // An empty list takes a ring as its own, the cursor at its head.
    void takeRing(Node *ring, unsigned int length)
    {
        head = cursor = ring;
        cursorIndex = 0;
        count = length;
    }

    // Where the cursor stands once a ring of spliced nodes went in before it: what a walk
    // from the head would count, found without the walk.
    unsigned int indexAfterSplice(bool headMoved, unsigned int spliced) const
    {
        if (headMoved)
            return spliced;
        return cursor == head ? 0 : cursorIndex + spliced;
    }

    void forget()
    {
        head = cursor = nullptr;
        cursorIndex = 0;
        count = 0;
    }

    void addAll(PList const &other)
    {
        for (T const &value : other)
            add(value);
    }

    // The node at index, reached from the head by the shorter way round.
    Node *nodeAt(unsigned int index) const
    {
        Node *node = head;
        if (index <= count / 2) {
            for (unsigned int i = 0; i < index; ++i)
                node = node->next;
        } else {
            for (unsigned int i = index; i < count; ++i)
                node = node->prev;
        }
        return node;
    }

    bool inRange(int index) const { return index >= 0 && static_cast<unsigned int>(index) < count; }

    // The cursor is null exactly while the list is empty; reads move it, even constant ones.
    Node *head = nullptr;
    mutable Node *cursor = nullptr;
    mutable unsigned int cursorIndex = 0;
    unsigned int count = 0;
};
