// GSharedHandle.h - one platform object shared by every copy of a graphic object.
//
//   GHandleBox<H>     heap record naming one GDI handle, deleting it if owned
//   GBitmapBox        heap record of a bitmap handle, always owned
//   GSharedHandle<B>  holder of a counted share in one box
//
// A graphic object is a value: its copies hold shares of one PRefCount whose pointer is the
// box. Every read or change of a share happens under the foundation's reference-count lock;
// the last share deletes the box, and with it the platform object, after the lock is left.
#pragma once

#include "foundation/PRefCount.h"
#include "foundation/TeskWinExport.h"

#include <new>
#include <windows.h>

template <typename H>
struct GHandleBox {
    using Handle = H;

    GHandleBox(H handle, int owned) : handle(handle), owned(owned) {}
    // A new box, or null when memory runs out; an owned handle then goes at once.
    static GHandleBox *make(H handle, int owned)
    {
        GHandleBox *box = new (std::nothrow) GHandleBox(handle, owned);
        if (!box && handle && owned)
            DeleteObject(handle);
        return box;
    }
    // Stock objects and handles passed in are named, never deleted.
    ~GHandleBox()
    {
        if (handle && owned)
            DeleteObject(handle);
    }
    GHandleBox(GHandleBox const &) = delete;
    GHandleBox &operator=(GHandleBox const &) = delete;

    H handle;
    int owned;
};

struct GBitmapBox {
    using Handle = HBITMAP;

    explicit GBitmapBox(HBITMAP handle) : handle(handle) {}
    // A new box, or null when memory runs out; the handle then goes at once.
    static GBitmapBox *make(HBITMAP handle)
    {
        GBitmapBox *box = new (std::nothrow) GBitmapBox(handle);
        if (!box && handle)
            DeleteObject(handle);
        return box;
    }
    ~GBitmapBox()
    {
        if (handle)
            DeleteObject(handle);
    }
    GBitmapBox(GBitmapBox const &) = delete;
    GBitmapBox &operator=(GBitmapBox const &) = delete;

    HBITMAP handle;
};

template <typename B>
class GSharedHandle {
public:
    using Handle = typename B::Handle;

    // A share of nothing.
    GSharedHandle();
    // The first share of box; the new counter already counts it.
    explicit GSharedHandle(B *box);
    GSharedHandle(GSharedHandle const &other);
    GSharedHandle &operator=(GSharedHandle const &other);
    virtual ~GSharedHandle();

    // Drops this share and takes the first share of a new box.
    void reset(B *box);

    // The shared box, or null.
    B *box() const;
    // The box's handle, or zero.
    Handle handle() const;

private:
    void replace(GSharedHandle const *source);

    PRefCount *ref;
};

// The members are defined here but instantiated once, in the library, for each box type
// (see the end of this header): shares are taken and dropped, and platform objects
// deleted, by the library's own code whichever module copies a graphic object.

template <typename B>
GSharedHandle<B>::GSharedHandle() : ref(new (std::nothrow) PRefCount(nullptr))
{
}

template <typename B>
GSharedHandle<B>::GSharedHandle(B *box) : ref(new (std::nothrow) PRefCount(box))
{
    if (!ref)
        delete box;
}

template <typename B>
GSharedHandle<B>::GSharedHandle(GSharedHandle const &other) : ref(nullptr)
{
    replace(&other);
}

template <typename B>
GSharedHandle<B> &GSharedHandle<B>::operator=(GSharedHandle const &other)
{
    if (this != &other)
        replace(&other);
    return *this;
}

template <typename B>
GSharedHandle<B>::~GSharedHandle()
{
    replace(nullptr);
}

template <typename B>
void GSharedHandle<B>::reset(B *box)
{
    *this = GSharedHandle(box);
}

template <typename B>
B *GSharedHandle<B>::box() const
{
    PRefCountLock lock;
    return ref ? static_cast<B *>(ref->pointer()) : nullptr;
}

template <typename B>
typename GSharedHandle<B>::Handle GSharedHandle<B>::handle() const
{
    B *shared = box();
    return shared ? shared->handle : Handle();
}

// Takes a share of source's counter (none for null) and drops the current share; the last
// share deletes counter and box once the lock is released.
template <typename B>
void GSharedHandle<B>::replace(GSharedHandle const *source)
{
    PRefCount *old;
    unsigned long remaining;
    {
        PRefCountLock lock;
        old = ref;
        ref = source ? source->ref : nullptr;
        if (ref)
            ++*ref;
        if (!old)
            return;
        remaining = old->decrement();
    }
    if (remaining > 0)
        return;
    B *shared = static_cast<B *>(old->pointer());
    delete old;
    delete shared;
}

extern template class TESKWIN_API GSharedHandle<GHandleBox<HPEN>>;
extern template class TESKWIN_API GSharedHandle<GHandleBox<HBRUSH>>;
extern template class TESKWIN_API GSharedHandle<GHandleBox<HFONT>>;
extern template class TESKWIN_API GSharedHandle<GHandleBox<HPALETTE>>;
extern template class TESKWIN_API GSharedHandle<GBitmapBox>;
