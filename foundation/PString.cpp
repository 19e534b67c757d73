#include "foundation/PString.h"

#include "foundation/PMemory.h"

#include <climits>
#include <cstring>

namespace {

unsigned int textLength(char const *text)
{
    return text ? static_cast<unsigned int>(std::strlen(text)) : 0;
}

} // namespace

PString::PString() : text(shortText), count(0), capacity(shortCapacity)
{
    shortText[0] = 0;
}

PString::PString(char const *text) : PString()
{
    assign(text, textLength(text));
}

PString::PString(PString const &other) : PString()
{
    assign(other.text, static_cast<unsigned int>(other.count));
}

PString::PString(int count, int character) : PString()
{
    if (count <= 0 || !makeRoom(static_cast<unsigned int>(count)))
        return;
    std::memset(text, character, static_cast<unsigned int>(count));
    text[count] = 0;
    this->count = count;
}

PString::~PString()
{
    if (text != shortText)
        PLocalFree(text);
}

// Grows the buffer to hold size characters; what it held is lost when it grows.
bool PString::makeRoom(unsigned int size)
{
    if (size <= static_cast<unsigned int>(capacity))
        return true;
    if (size >= static_cast<unsigned int>(INT_MAX))
        return false;
    auto *block = static_cast<char *>(PLocalAlloc(size + 1));
    if (!block)
        return false;
    if (text != shortText)
        PLocalFree(text);
    text = block;
    capacity = static_cast<int>(size);
    return true;
}

// from may lie inside this string's own buffer: then size fits and nothing is reallocated.
void PString::assign(char const *from, unsigned int size)
{
    if (!makeRoom(size))
        size = 0;
    if (size)
        std::memmove(text, from, size);
    text[size] = 0;
    count = static_cast<int>(size);
}

PString &PString::operator=(PString const &other)
{
    assign(other.text, static_cast<unsigned int>(other.count));
    return *this;
}

void PString::set(char const *text)
{
    assign(text, textLength(text));
}

int PString::operator==(char const *text) const
{
    return textLength(text) == static_cast<unsigned int>(count) &&
           std::memcmp(this->text, text ? text : "", static_cast<unsigned int>(count)) == 0;
}

int PString::operator==(PString const &other) const
{
    return count == other.count &&
           std::memcmp(text, other.text, static_cast<unsigned int>(count)) == 0;
}

PString PString::operator+(char const *text) const
{
    PString result;
    const unsigned int added = textLength(text);
    const unsigned int size = static_cast<unsigned int>(count) + added;
    if (size < added || !result.makeRoom(size))
        return result;
    std::memcpy(result.text, this->text, static_cast<unsigned int>(count));
    if (added)
        std::memcpy(result.text + count, text, added);
    result.text[size] = 0;
    result.count = static_cast<int>(size);
    return result;
}

PString::operator char *()
{
    return text;
}

PString::operator char const *() const
{
    return text;
}

char PString::operator[](int index) const
{
    return index >= 0 && index < count ? text[index] : 0;
}

int PString::length() const
{
    return count;
}

int PString::isEmpty() const
{
    return count == 0;
}

void PString::toUpper()
{
    for (int i = 0; i < count; ++i) {
        const char c = text[i];
        if (c >= 'a' && c <= 'z')
            text[i] = static_cast<char>(c - ('a' - 'A'));
    }
}

// The writer may have overwritten the last zero byte, so the search stops at the buffer's end.
void PString::resize()
{
    const void *end = std::memchr(text, 0, static_cast<unsigned int>(capacity));
    count = end ? static_cast<int>(static_cast<char const *>(end) - text) : capacity;
    text[count] = 0;
}
