#include "foundation/IErrorMessage.h"

#include <new>

IErrorMessage::IErrorMessage(PString const &text, IErrorMessageType type) : text(text), type(type)
{
}

IErrorMessage::~IErrorMessage() = default;

PString const &IErrorMessage::getText() const
{
    return text;
}

IErrorMessageType IErrorMessage::getType() const
{
    return type;
}

namespace {

// A ring of the most recent entries; the newest replaces the oldest when it is full.
class ErrorLog {
public:
    constexpr ErrorLog() : entries{}, first(0), count(0) {}
    ~ErrorLog() { clear(); }

    void add(IErrorMessage const &message)
    {
        auto *entry = new (std::nothrow) IErrorMessage(message);
        if (!entry)
            return;
        if (count == errorLogCapacity) {
            delete entries[first];
            entries[first] = entry;
            first = (first + 1) % errorLogCapacity;
            return;
        }
        entries[(first + count) % errorLogCapacity] = entry;
        ++count;
    }

    int size() const { return count; }

    IErrorMessage const *at(int index) const
    {
        return index >= 0 && index < count ? entries[(first + index) % errorLogCapacity] : nullptr;
    }

    void clear()
    {
        for (int i = 0; i < count; ++i)
            delete entries[(first + i) % errorLogCapacity];
        first = 0;
        count = 0;
    }

private:
    IErrorMessage *entries[errorLogCapacity];
    int first;
    int count;
};

// Constant-initialised, so entries logged by other static objects are never lost.
ErrorLog theErrorLog;

} // namespace

void LogErrorMessage(IErrorMessage const &message)
{
    theErrorLog.add(message);
}

int getErrorLogCount()
{
    return theErrorLog.size();
}

IErrorMessage const *getErrorLogEntry(int index)
{
    return theErrorLog.at(index);
}

void clearErrorLog()
{
    theErrorLog.clear();
}
