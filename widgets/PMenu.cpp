#include "widgets/PMenu.h"

#include "events/PAppInterface.h"
#include "windows/PWindow.h"

#include <cstddef>
#include <new>

namespace {

UINT positionFlag(int byPosition)
{
    return byPosition ? MF_BYPOSITION : MF_BYCOMMAND;
}

// The end of a menu, for InsertMenuA.
const UINT appendPosition = 0xFFFFFFFF;

} // namespace

MenuHandle::~MenuHandle()
{
    if (!handle || !owned || !IsMenu(handle))
        return;
    int count = GetMenuItemCount(handle);
    for (int position = 0; position < count; ++position) {
        HMENU sub = GetSubMenu(handle, position);
        if (!sub)
            continue;
        // Deliberate: the position rises while the items shift down, so about every second
        // item is taken out and the calls past the end fail; DestroyMenu takes the rest.
        int subCount = GetMenuItemCount(sub);
        for (int item = 0; item < subCount; ++item)
            RemoveMenu(sub, item, MF_BYPOSITION);
    }
    DestroyMenu(handle);
}

PMenu::PMenu() : handleRef(new (std::nothrow) MenuHandle{nullptr, 1})
{
}

PMenu::PMenu(PString const &name, PAppInterface *app) : name(name)
{
    if (!app)
        return;
    IConsoleApp *console = app;
    handleRef.reset(new (std::nothrow) MenuHandle{LoadMenuA(console->getResourceModule(), name), 1});
}

PMenu::PMenu(HMENU handle, int owned) : handleRef(new (std::nothrow) MenuHandle{handle, owned})
{
}

PMenu::PMenu(PMenu const &other) = default;

PMenu &PMenu::operator=(PMenu const &other)
{
    if (this != &other) {
        name = other.name;
        handleRef = other.handleRef;
        menuPos = other.menuPos;
    }
    return *this;
}

PMenu::~PMenu() = default;

int PMenu::operator==(PMenu const &other) const
{
    return handle() == other.handle();
}

int PMenu::operator!=(PMenu const &other) const
{
    return !(*this == other);
}

PMenu::operator HMENU() const
{
    return handle();
}

// A menu that never loaded has no record and reads as no menu: merely invalid.
HMENU PMenu::handle() const
{
    return handleRef.handle();
}

MenuHandle *PMenu::record() const
{
    return handleRef.box();
}

int PMenu::create()
{
    HMENU created = CreateMenu();
    if (!created)
        return 0;
    handleRef.reset(new (std::nothrow) MenuHandle{created, 1});
    return handleRef.box() != nullptr;
}

int PMenu::isValid() const
{
    HMENU menu = handle();
    return menu && IsMenu(menu) ? 1 : 0;
}

int PMenu::getMenuItemCount()
{
    return GetMenuItemCount(handle());
}

unsigned short PMenu::getMenuItemID(int position)
{
    return static_cast<unsigned short>(GetMenuItemID(handle(), position));
}

PMenu PMenu::getSubMenu(unsigned short position)
{
    HMENU sub = GetSubMenu(handle(), position);
    if (sub)
        return PMenu(sub, 0);
    return *this;
}

PString PMenu::getName()
{
    return name;
}

GPoint PMenu::getMenuPos()
{
    return menuPos;
}

int PMenu::isSeparator(unsigned short item, int byPosition)
{
    MENUITEMINFOA info = {};
    // The size without hbmpItem, which every version of the platform accepts.
    info.cbSize = offsetof(MENUITEMINFOA, hbmpItem);
    info.fMask = MIIM_TYPE;
    if (!GetMenuItemInfoA(handle(), item, byPosition ? TRUE : FALSE, &info))
        return 0;
    return (info.fType & MFT_SEPARATOR) ? 1 : 0;
}

int PMenu::isChecked(unsigned short item, int byPosition)
{
    return (GetMenuState(handle(), item, positionFlag(byPosition)) & MF_CHECKED) ? 1 : 0;
}

int PMenu::isDisabled(unsigned short item, int byPosition)
{
    return (GetMenuState(handle(), item, positionFlag(byPosition)) & MF_DISABLED) ? 1 : 0;
}

int PMenu::isGray(unsigned short item, int byPosition)
{
    return (GetMenuState(handle(), item, positionFlag(byPosition)) & MF_GRAYED) ? 1 : 0;
}

int PMenu::isEnabled(unsigned short item, int byPosition)
{
    return (GetMenuState(handle(), item, positionFlag(byPosition)) & (MF_GRAYED | MF_DISABLED)) ? 0 : 1;
}

void PMenu::check(unsigned short item, int byPosition)
{
    CheckMenuItem(handle(), item, MF_CHECKED | positionFlag(byPosition));
}

void PMenu::unCheck(unsigned short item, int byPosition)
{
    CheckMenuItem(handle(), item, positionFlag(byPosition));
}

void PMenu::enableItem(unsigned short item, int byPosition)
{
    EnableMenuItem(handle(), item, MF_ENABLED | positionFlag(byPosition));
}

void PMenu::disableItem(unsigned short item, int byPosition)
{
    EnableMenuItem(handle(), item, MF_DISABLED | positionFlag(byPosition));
}

void PMenu::grayItem(unsigned short item, int byPosition)
{
    EnableMenuItem(handle(), item, MF_GRAYED | positionFlag(byPosition));
}

int PMenu::deleteItem(unsigned short item, int byPosition)
{
    return DeleteMenu(handle(), item, positionFlag(byPosition));
}

int PMenu::removeItem(unsigned short item, int byPosition)
{
    return deleteItem(item, byPosition);
}

int PMenu::detachItem(unsigned short item, int byPosition)
{
    return RemoveMenu(handle(), item, positionFlag(byPosition));
}

int PMenu::addString(unsigned short before, PString const &text, unsigned short id)
{
    return InsertMenuA(handle(), before, MF_STRING, id, text);
}

int PMenu::addStringByPosition(unsigned short position, PString const &text, unsigned short id)
{
    return InsertMenuA(handle(), position, MF_BYPOSITION, id, text);
}

int PMenu::addSeparator(unsigned short before)
{
    return InsertMenuA(handle(), before, MF_SEPARATOR, 0, nullptr);
}

int PMenu::addMenu(unsigned short before, PString const &text, PMenu *sub)
{
    if (MenuHandle *subRecord = sub->record())
        subRecord->owned = 0;
    return InsertMenuA(handle(), before, MF_POPUP, reinterpret_cast<UINT_PTR>(sub->handle()), text);
}

int PMenu::addString(PString const &text, unsigned short id)
{
    return InsertMenuA(handle(), appendPosition, MF_STRING, id, text);
}

int PMenu::addMenu(PString const &text, PMenu *sub)
{
    return InsertMenuA(handle(), appendPosition, MF_POPUP, reinterpret_cast<UINT_PTR>(sub->handle()), text);
}

int PMenu::addSeparator()
{
    return InsertMenuA(handle(), appendPosition, MF_SEPARATOR, 0, nullptr);
}

int PMenu::changeString(unsigned short position, PString const &text)
{
    UINT id = GetMenuItemID(handle(), position);
    if (id == static_cast<UINT>(-1))
        return 0;
    return ModifyMenuA(handle(), position, MF_BYPOSITION, id, text);
}

int PMenu::changeMenu(unsigned short position, PString const &text, PMenu *sub)
{
    return ModifyMenuA(handle(), position, MF_BYPOSITION | MF_POPUP,
                       reinterpret_cast<UINT_PTR>(sub->handle()), text);
}

int PMenu::changeStringToMenu(unsigned short position, PString const &text, PMenu *sub)
{
    return changeMenu(position, text, sub);
}

int PMenu::changeMenuToString(unsigned short position, PString const &text, unsigned short id)
{
    return ModifyMenuA(handle(), position, MF_BYPOSITION, id, text);
}

int PMenu::trackMenu(PWindow *owner, GPoint const &point)
{
    menuPos = point;
    HMENU popup = GetSubMenu(handle(), 0);
    if (!popup)
        return 0;
    HWND ownerWindow = owner ? static_cast<HWND>(*owner) : nullptr;
    return TrackPopupMenu(popup, 0, static_cast<int>(point.getX()), static_cast<int>(point.getY()), 0,
                          ownerWindow, nullptr);
}

void PMenu::enableAll(int flat)
{
    setAll(MF_ENABLED, flat);
}

void PMenu::disableAll(int flat)
{
    setAll(MF_DISABLED, flat);
}

void PMenu::grayAll(int flat)
{
    setAll(MF_GRAYED, flat);
}

// The popup entries themselves keep their state when not flat; the count is read anew
// on each pass.
void PMenu::setAll(UINT state, int flat)
{
    for (int position = 0; position < getMenuItemCount(); ++position) {
        if (flat) {
            EnableMenuItem(handle(), position, state | MF_BYPOSITION);
            continue;
        }
        unsigned short id = getMenuItemID(position);
        if (id == 0xFFFF) {
            PMenu sub = getSubMenu(static_cast<unsigned short>(position));
            if (sub != *this)
                sub.setAll(state, 0);
        } else {
            EnableMenuItem(handle(), id, state | MF_BYCOMMAND);
        }
    }
}

// Walks downward, so that deletions do not move the positions still to be visited.
void PMenu::syncSeparators()
{
    int last = getMenuItemCount() - 1;
    for (int i = last; i >= 0; --i) {
        unsigned short id = getMenuItemID(i);
        if (id == 0) {
            if (i == 0 || i == last || getMenuItemID(i - 1) == 0) {
                DeleteMenu(handle(), i, MF_BYPOSITION);
                --last;
            }
        } else if (id == 0xFFFF) {
            getSubMenu(static_cast<unsigned short>(i)).syncSeparators();
        }
    }
}

PAccel::PAccel() : handle(nullptr)
{
}

PAccel::PAccel(PString const &name, HINSTANCE instance) : handle(nullptr)
{
    load(name, instance);
}

PAccel::PAccel(PAccel const &other) = default;

PAccel &PAccel::operator=(PAccel const &other)
{
    if (this != &other) {
        handle = other.handle;
        name = other.name;
    }
    return *this;
}

// The platform frees resource accelerators with their module.
PAccel::~PAccel() = default;

int PAccel::load(PString const &name, HINSTANCE instance)
{
    this->name = name;
    if (!instance)
        return 0;
    handle = LoadAcceleratorsA(instance, name);
    return handle ? 1 : 0;
}

PAccel::operator HACCEL() const
{
    return handle;
}
