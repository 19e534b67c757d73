// PString.h - growable text of 8-bit characters.
//
//   PString   a zero-terminated string with value semantics
#pragma once

#include "foundation/TeskWinExport.h"

// Texts of up to 15 characters live inside the object, longer ones in one block from
// PLocalAlloc sized to fit exactly. A null char pointer is taken as the empty text
// everywhere. When memory runs out, the string being built is left empty.
class TESKWIN_API PString {
public:
    PString();
    PString(char const *text);
    PString(PString const &other);
    // count copies of character; with 0x20 it serves as a writable buffer of known size,
    // filled through operator char * and then fitted with resize().
    PString(int count, int character);
    ~PString();

    PString &operator=(PString const &other);
    void set(char const *text);

    int operator==(char const *text) const;
    int operator==(PString const &other) const;
    // Without these, != and a text on the left would compare pointers through the conversions.
    int operator!=(char const *text) const { return !(*this == text); }
    int operator!=(PString const &other) const { return !(*this == other); }
    friend int operator==(char const *text, PString const &string) { return string == text; }
    friend int operator!=(char const *text, PString const &string) { return !(string == text); }

    PString operator+(char const *text) const;

    // The characters and a zero byte; the writable form offers length() + 1 bytes.
    operator char *();
    operator char const *() const;
    // The character at index, or 0 outside the text.
    char operator[](int index) const;

    int length() const;
    int isEmpty() const;

    // Upper-cases the letters a to z in place; other bytes stay as they are.
    void toUpper();
    // Takes the length from the zero byte after a writer has filled the buffer.
    void resize();

private:
    enum { shortCapacity = 15 };

    bool makeRoom(unsigned int size);
    void assign(char const *from, unsigned int size);

    char *text;
    int count;
    int capacity;
    char shortText[shortCapacity + 1];
};
