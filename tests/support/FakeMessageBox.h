// FakeMessageBox.h - stands in for MessageBoxA, so that no test reaches a real modal box.
//
//   FakeMessageBox  for its scope, records what the library asked a box to show and answers
#pragma once

#include "support/ImportPatch.h"

#include <windows.h>

#include <string>

// What the last box was asked to show; owner starts non-null so that a null is seen.
struct MessageBoxCall {
    HWND owner = reinterpret_cast<HWND>(1);
    std::string text;
    std::string caption;
    UINT style = 0;
};

class FakeMessageBox {
public:
    using Call = MessageBoxCall;

    FakeMessageBox() { last = Call(); answer = IDOK; }
    bool isActive() const { return patch.isActive(); }

    static inline Call last;
    // The button the next boxes answer with.
    static inline int answer = IDOK;

private:
    static int WINAPI show(HWND owner, char const *text, char const *caption, UINT style)
    {
        last.owner = owner;
        last.text = text ? text : "";
        last.caption = caption ? caption : "";
        last.style = style;
        return answer;
    }

    ImportPatch patch{"TeskWin.dll", "user32.dll", "MessageBoxA", reinterpret_cast<void *>(show)};
};
