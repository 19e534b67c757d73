// PHashablePointer.h - a pointer as a hash-table key.
//
//   PHashablePointer<T>   a T *, hashed by its address times 1741, compared by address.
#pragma once

#include <cstdint>
#include <functional>

template <typename T>
class PHashablePointer {
public:
    PHashablePointer() = default;
    explicit PHashablePointer(T *pointer) : pointer(pointer) {}
    PHashablePointer(PHashablePointer const &) = default;
    PHashablePointer &operator=(PHashablePointer const &) = default;
    virtual ~PHashablePointer() = default;

    // The address times 1741, wrapping in unsigned 32-bit arithmetic.
    int hash() const
    {
        const auto address = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(pointer));
        return static_cast<int>(address * 1741u);
    }

    T *getPointer() { return pointer; }
    T const *getPointer() const { return pointer; }
    T &operator*() const { return *pointer; }
    T *operator->() const { return pointer; }
    operator T *() const { return pointer; }

    bool operator==(PHashablePointer const &other) const { return pointer == other.pointer; }
    bool operator!=(PHashablePointer const &other) const { return pointer != other.pointer; }
    bool operator==(T const *other) const { return pointer == other; }
    bool operator!=(T const *other) const { return pointer != other; }
    // A plain pointer matches these exactly; through the conversion above it would otherwise
    // tie with the built-in comparison of two pointers.
    template <typename U>
    bool operator==(U *other) const
    {
        return pointer == other;
    }
    template <typename U>
    bool operator!=(U *other) const
    {
        return pointer != other;
    }
    // Addresses in the total order of std::less, defined for unrelated objects too.
    bool operator<(PHashablePointer const &other) const { return std::less<T const *>()(pointer, other.pointer); }
    bool operator>(PHashablePointer const &other) const { return std::less<T const *>()(other.pointer, pointer); }

private:
    T *pointer = nullptr;
};
