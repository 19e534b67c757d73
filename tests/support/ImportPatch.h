// ImportPatch.h - points one imported function of a loaded module elsewhere, for a scope.
//
//   ImportPatch  rewrites one slot of a module's import address table and restores it
//
// Tests use it to watch or steer the platform calls that TeskWin.dll makes, without any
// hook in the library itself. Only calls through the patched module's own imports are seen.
#pragma once

class ImportPatch {
public:
    // Points the import of function from dll (e.g. "gdi32.dll") in module (e.g.
    // "TeskWin.dll") at replacement. Nothing changes if the module does not import it.
    ImportPatch(char const *module, char const *dll, char const *function, void *replacement);
    ~ImportPatch();
    ImportPatch(ImportPatch const &) = delete;
    ImportPatch &operator=(ImportPatch const &) = delete;

    // Whether the import was found and now leads to the replacement.
    bool isActive() const { return slot != nullptr; }
    // The function the import led to before, or null when inactive.
    void *original() const { return saved; }

    // Casts original() to the type of the function it replaced.
    template <typename Function>
    Function *originalAs() const
    {
        return reinterpret_cast<Function *>(saved);
    }

private:
    void **slot;
    void *saved;
};
