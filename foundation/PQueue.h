// PQueue.h - first in, first out.
//
//   PQueue<T>   a PList<T> used as a queue: values go in at the end and come out at the head.
#pragma once

#include "foundation/PList.h"

template <typename T>
class PQueue : public PList<T> {
public:
    void enQueue(T &value) { this->add(value); }

    // Copies the oldest value into value and removes it; 0, with value untouched, when empty.
    int deQueue(T &value)
    {
        if (isEmpty())
            return 0;
        value = (*this)(0);
        this->remove(0);
        return 1;
    }

    bool isEmpty() const { return this->length() == 0; }
};
