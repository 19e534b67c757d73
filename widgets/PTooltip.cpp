#include "widgets/PTooltip.h"

#include <commctrl.h>

namespace {

constexpr unsigned long tooltipStyle = TTS_ALWAYSTIP;

HWND handleOf(PWindowObject const *window)
{
    return window ? static_cast<HWND>(*window) : nullptr;
}

} // namespace

PTooltip::PTooltip(PWindowObject *parent, int centerTip) : PWindow(parent, PString(), nullptr), centerTip(centerTip)
{
    InitCommonControls();
    style = tooltipStyle;
    isMDIChild = 0;
    if (parent)
        parent->removeChild(this);
}

char *PTooltip::getClassName()
{
    static char className[] = "tooltips_class32";
    return className;
}

int PTooltip::create()
{
    hwnd = CreateWindowExA(0, getClassName(), nullptr, style, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT,
                           CW_USEDEFAULT, nullptr, nullptr, getAppInstance(), nullptr);
    addWinPtr(this, hwnd);
    return 1;
}

// The tool is named by its handle, so it needs no rectangle; the text is asked for when the
// tip shows. The count and the read-back are kept as steps of the operation.
int PTooltip::attachControl(PWindowObject *control)
{
    TOOLINFOA tool = {};
    // The record as far as lParam: 44 bytes on 32-bit Windows.
    tool.cbSize = TTTOOLINFOA_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | (centerTip ? TTF_CENTERTIP : 0);
    tool.hwnd = handleOf(parent ? parent->getParent() : nullptr);
    tool.uId = reinterpret_cast<UINT_PTR>(handleOf(control));
    tool.hinst = nullptr;
    tool.lpszText = LPSTR_TEXTCALLBACKA;
    const LRESULT added = SendMessageA(hwnd, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageA(hwnd, TTM_GETTOOLCOUNT, 0, 0);
    SendMessageA(hwnd, TTM_GETTOOLINFOA, 0, reinterpret_cast<LPARAM>(&tool));
    return static_cast<int>(added);
}
