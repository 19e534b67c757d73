// ImportPatch.h - replaces a function that TeskWin.dll imports, for one scope of a test.
//
// Tests reach platform calls that must not run for real (WinHelpA, ExitProcess) or that
// they count (DestroyCursor, GetSysColor) through the library's own import table.
#pragma once

#include <windows.h>

#include <cstring>

class ImportPatch {
public:
    ImportPatch(char const *function, void *replacement) : slot(findSlot(function)), original(nullptr)
    {
        if (slot) {
            original = *slot;
            write(replacement);
        }
    }
    ~ImportPatch()
    {
        if (slot)
            write(original);
    }
    ImportPatch(ImportPatch const &) = delete;
    ImportPatch &operator=(ImportPatch const &) = delete;

    bool active() const { return slot != nullptr; }

private:
    static void **findSlot(char const *function)
    {
        auto *base = reinterpret_cast<unsigned char *>(GetModuleHandleA("TeskWin.dll"));
        if (!base)
            return nullptr;
        auto *dos = reinterpret_cast<IMAGE_DOS_HEADER *>(base);
        auto *nt = reinterpret_cast<IMAGE_NT_HEADERS *>(base + dos->e_lfanew);
        IMAGE_DATA_DIRECTORY const &directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        auto *descriptor = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR *>(base + directory.VirtualAddress);
        for (; descriptor->Name; ++descriptor) {
            auto *names = reinterpret_cast<IMAGE_THUNK_DATA *>(base + descriptor->OriginalFirstThunk);
            auto *slots = reinterpret_cast<void **>(base + descriptor->FirstThunk);
            for (int i = 0; names[i].u1.AddressOfData; ++i) {
                if (IMAGE_SNAP_BY_ORDINAL(names[i].u1.Ordinal))
                    continue;
                auto *byName = reinterpret_cast<IMAGE_IMPORT_BY_NAME *>(base + names[i].u1.AddressOfData);
                if (std::strcmp(reinterpret_cast<char const *>(byName->Name), function) == 0)
                    return &slots[i];
            }
        }
        return nullptr;
    }

    void write(void *value)
    {
        DWORD old;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &old);
        *slot = value;
        VirtualProtect(slot, sizeof *slot, old, &old);
    }

    void **slot;
    void *original;
};
