#include "support/GdiObjectCounter.h"

#include <windows.h>

#include <algorithm>

namespace {

struct Creation {
    void *handle;
    int deletions;
};

} // namespace

// What a counter has seen.
struct GdiLedger {
    std::vector<Creation> creations;
    std::vector<void *> otherDeletions;
    int deleteCalls = 0;

    void created(void *handle)
    {
        if (handle)
            creations.push_back(Creation{handle, 0});
    }
    void deleted(void *handle)
    {
        ++deleteCalls;
        auto latest = std::find_if(creations.rbegin(), creations.rend(),
                                   [handle](Creation const &c) { return c.handle == handle; });
        if (latest != creations.rend())
            ++latest->deletions;
        else
            otherDeletions.push_back(handle);
    }
};

namespace {

// The ledger of the counter alive now, if any.
GdiLedger *activeLedger = nullptr;

// Stands in for a platform function of type F that makes an object: calls the real one
// through the saved import and records the handle it returns.
template <typename F, F *Target>
struct CreationHook;
template <typename R, typename... A, R(WINAPI *Target)(A...)>
struct CreationHook<R WINAPI(A...), Target> {
    static void *original;
    static R WINAPI hook(A... args)
    {
        R made = reinterpret_cast<R(WINAPI *)(A...)>(original)(args...);
        if (activeLedger)
            activeLedger->created(reinterpret_cast<void *>(made));
        return made;
    }
};
template <typename R, typename... A, R(WINAPI *Target)(A...)>
void *CreationHook<R WINAPI(A...), Target>::original = nullptr;

// Stands in for a platform function that deletes the object given as its only argument.
template <typename F, F *Target>
struct DeletionHook;
template <typename R, typename A, R(WINAPI *Target)(A)>
struct DeletionHook<R WINAPI(A), Target> {
    static void *original;
    static R WINAPI hook(A object)
    {
        if (activeLedger)
            activeLedger->deleted(reinterpret_cast<void *>(object));
        return reinterpret_cast<R(WINAPI *)(A)>(original)(object);
    }
};
template <typename R, typename A, R(WINAPI *Target)(A)>
void *DeletionHook<R WINAPI(A), Target>::original = nullptr;

struct Watched {
    char const *dll;
    char const *function;
    void *hook;
    void **original;
};

template <typename Hook>
Watched watch(char const *dll, char const *function)
{
    return Watched{dll, function, reinterpret_cast<void *>(&Hook::hook), &Hook::original};
}

template <typename F, F *Target>
Watched creator(char const *dll, char const *function)
{
    return watch<CreationHook<F, Target>>(dll, function);
}

template <typename F, F *Target>
Watched deleter(char const *dll, char const *function)
{
    return watch<DeletionHook<F, Target>>(dll, function);
}

const char gdi[] = "gdi32.dll";
const char user[] = "user32.dll";

// Every platform call of the library that makes or deletes a GDI object.
std::vector<Watched> watchedCalls()
{
    return {
        creator<decltype(CreatePen), &CreatePen>(gdi, "CreatePen"),
        creator<decltype(CreatePenIndirect), &CreatePenIndirect>(gdi, "CreatePenIndirect"),
        creator<decltype(ExtCreatePen), &ExtCreatePen>(gdi, "ExtCreatePen"),
        creator<decltype(CreateSolidBrush), &CreateSolidBrush>(gdi, "CreateSolidBrush"),
        creator<decltype(CreateHatchBrush), &CreateHatchBrush>(gdi, "CreateHatchBrush"),
        creator<decltype(CreateBrushIndirect), &CreateBrushIndirect>(gdi, "CreateBrushIndirect"),
        creator<decltype(CreatePatternBrush), &CreatePatternBrush>(gdi, "CreatePatternBrush"),
        creator<decltype(CreateDIBPatternBrushPt), &CreateDIBPatternBrushPt>(gdi, "CreateDIBPatternBrushPt"),
        creator<decltype(CreatePalette), &CreatePalette>(gdi, "CreatePalette"),
        creator<decltype(CreateHalftonePalette), &CreateHalftonePalette>(gdi, "CreateHalftonePalette"),
        creator<decltype(CreateFontIndirectA), &CreateFontIndirectA>(gdi, "CreateFontIndirectA"),
        creator<decltype(CreateFontA), &CreateFontA>(gdi, "CreateFontA"),
        creator<decltype(CreateBitmap), &CreateBitmap>(gdi, "CreateBitmap"),
        creator<decltype(CreateBitmapIndirect), &CreateBitmapIndirect>(gdi, "CreateBitmapIndirect"),
        creator<decltype(CreateCompatibleBitmap), &CreateCompatibleBitmap>(gdi, "CreateCompatibleBitmap"),
        creator<decltype(CreateDIBitmap), &CreateDIBitmap>(gdi, "CreateDIBitmap"),
        creator<decltype(CreateDIBSection), &CreateDIBSection>(gdi, "CreateDIBSection"),
        creator<decltype(CreateCompatibleDC), &CreateCompatibleDC>(gdi, "CreateCompatibleDC"),
        creator<decltype(CreateDCA), &CreateDCA>(gdi, "CreateDCA"),
        creator<decltype(CreateICA), &CreateICA>(gdi, "CreateICA"),
        creator<decltype(CreateRectRgn), &CreateRectRgn>(gdi, "CreateRectRgn"),
        creator<decltype(CreateRectRgnIndirect), &CreateRectRgnIndirect>(gdi, "CreateRectRgnIndirect"),
        creator<decltype(CreateRoundRectRgn), &CreateRoundRectRgn>(gdi, "CreateRoundRectRgn"),
        creator<decltype(CreateEllipticRgn), &CreateEllipticRgn>(gdi, "CreateEllipticRgn"),
        creator<decltype(CreateEllipticRgnIndirect), &CreateEllipticRgnIndirect>(gdi, "CreateEllipticRgnIndirect"),
        creator<decltype(CreatePolygonRgn), &CreatePolygonRgn>(gdi, "CreatePolygonRgn"),
        creator<decltype(CreatePolyPolygonRgn), &CreatePolyPolygonRgn>(gdi, "CreatePolyPolygonRgn"),
        creator<decltype(ExtCreateRegion), &ExtCreateRegion>(gdi, "ExtCreateRegion"),
        creator<decltype(PathToRegion), &PathToRegion>(gdi, "PathToRegion"),
        creator<decltype(CreateEnhMetaFileA), &CreateEnhMetaFileA>(gdi, "CreateEnhMetaFileA"),
        creator<decltype(CloseEnhMetaFile), &CloseEnhMetaFile>(gdi, "CloseEnhMetaFile"),
        creator<decltype(GetEnhMetaFileA), &GetEnhMetaFileA>(gdi, "GetEnhMetaFileA"),
        creator<decltype(LoadBitmapA), &LoadBitmapA>(user, "LoadBitmapA"),
        creator<decltype(LoadImageA), &LoadImageA>(user, "LoadImageA"),
        creator<decltype(CopyImage), &CopyImage>(user, "CopyImage"),
        deleter<decltype(DeleteObject), &DeleteObject>(gdi, "DeleteObject"),
        deleter<decltype(DeleteDC), &DeleteDC>(gdi, "DeleteDC"),
        deleter<decltype(DeleteEnhMetaFile), &DeleteEnhMetaFile>(gdi, "DeleteEnhMetaFile"),
    };
}

} // namespace

GdiObjectCounter::GdiObjectCounter(char const *module) : ledger(std::make_unique<GdiLedger>())
{
    activeLedger = ledger.get();
    for (Watched const &call : watchedCalls()) {
        auto patch = std::make_unique<ImportPatch>(module, call.dll, call.function, call.hook);
        if (!patch->isActive())
            continue;
        *call.original = patch->original();
        patches.push_back(std::move(patch));
    }
}

GdiObjectCounter::~GdiObjectCounter()
{
    patches.clear();
    activeLedger = nullptr;
}

int GdiObjectCounter::created() const
{
    return static_cast<int>(ledger->creations.size());
}

void *GdiObjectCounter::lastCreated() const
{
    return ledger->creations.empty() ? nullptr : ledger->creations.back().handle;
}

int GdiObjectCounter::deletions(void *handle) const
{
    auto latest = std::find_if(ledger->creations.rbegin(), ledger->creations.rend(),
                               [handle](Creation const &c) { return c.handle == handle; });
    if (latest != ledger->creations.rend())
        return latest->deletions;
    return static_cast<int>(std::count(ledger->otherDeletions.begin(), ledger->otherDeletions.end(), handle));
}

int GdiObjectCounter::deleteCalls() const
{
    return ledger->deleteCalls;
}

int GdiObjectCounter::live() const
{
    return static_cast<int>(std::count_if(ledger->creations.begin(), ledger->creations.end(),
                                          [](Creation const &c) { return c.deletions == 0; }));
}

bool GdiObjectCounter::eachDeletedOnce() const
{
    return ledger->otherDeletions.empty() &&
           std::all_of(ledger->creations.begin(), ledger->creations.end(),
                       [](Creation const &c) { return c.deletions == 1; });
}
