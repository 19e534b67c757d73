#include "support/ImportPatch.h"

#include <windows.h>

namespace {

// Writes value into a slot of a possibly read-only page.
void writeSlot(void **slot, void *value)
{
    DWORD protection;
    if (!VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection))
        return;
    *slot = value;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

// The import address table slot of function from dll in module, or null.
void **findImportSlot(HMODULE module, char const *dll, char const *function)
{
    auto base = reinterpret_cast<BYTE *>(module);
    auto dos = reinterpret_cast<IMAGE_DOS_HEADER *>(base);
    auto nt = reinterpret_cast<IMAGE_NT_HEADERS *>(base + dos->e_lfanew);
    IMAGE_DATA_DIRECTORY const &imports = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.VirtualAddress == 0)
        return nullptr;
    for (auto descriptor = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR *>(base + imports.VirtualAddress);
         descriptor->Name != 0; ++descriptor) {
        if (lstrcmpiA(reinterpret_cast<char const *>(base + descriptor->Name), dll) != 0)
            continue;
        if (descriptor->OriginalFirstThunk == 0)
            continue;
        auto names = reinterpret_cast<IMAGE_THUNK_DATA *>(base + descriptor->OriginalFirstThunk);
        auto slots = reinterpret_cast<void **>(base + descriptor->FirstThunk);
        for (int i = 0; names[i].u1.AddressOfData != 0; ++i) {
            if (IMAGE_SNAP_BY_ORDINAL(names[i].u1.Ordinal))
                continue;
            auto byName = reinterpret_cast<IMAGE_IMPORT_BY_NAME *>(base + names[i].u1.AddressOfData);
            if (lstrcmpA(reinterpret_cast<char const *>(byName->Name), function) == 0)
                return &slots[i];
        }
    }
    return nullptr;
}

} // namespace

ImportPatch::ImportPatch(char const *module, char const *dll, char const *function, void *replacement)
    : slot(nullptr), saved(nullptr)
{
    HMODULE loaded = GetModuleHandleA(module);
    if (!loaded)
        return;
    slot = findImportSlot(loaded, dll, function);
    if (!slot)
        return;
    saved = *slot;
    writeSlot(slot, replacement);
}

ImportPatch::~ImportPatch()
{
    if (slot)
        writeSlot(slot, saved);
}
