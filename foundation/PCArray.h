// PCArray.h - a fixed block of plain records.
//
//   PCArray<T>   size records in one malloc block, contents undefined, no range checks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

template <typename T>
class PCArray {
    static_assert(std::is_trivial<T>::value, "PCArray holds plain records only");

public:
    // When the block cannot be had, the array is empty.
    explicit PCArray(int size) : data(allocate(size)), size(data ? size : 0) {}
    ~PCArray() { std::free(data); }
    PCArray(PCArray const &) = delete;
    PCArray &operator=(PCArray const &) = delete;

    int length() const { return size; }
    // Shortens the visible length only; the block keeps its size and place.
    void reduceLength(int size) { this->size = size; }

    T const &operator[](int index) const { return data[index]; }
    T &operator()(int index) { return data[index]; }

private:
    // Negative sizes and byte counts past the address space fail like an empty heap.
    static T *allocate(int size)
    {
        if (size < 0 || static_cast<std::size_t>(size) > SIZE_MAX / sizeof(T))
            return nullptr;
        return static_cast<T *>(std::malloc(static_cast<std::size_t>(size) * sizeof(T)));
    }

    T *data;
    int size;
};
