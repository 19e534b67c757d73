// ScratchFiles.h - unique files in the temporary folder for a test, deleted at its end.
#pragma once

#include "TeskWin.h"

#include <windows.h>

#include <string>
#include <vector>

class ScratchFiles {
public:
    ScratchFiles() = default;
    ScratchFiles(ScratchFiles const &) = delete;
    ScratchFiles &operator=(ScratchFiles const &) = delete;
    ~ScratchFiles()
    {
        for (const std::string &name : names)
            DeleteFileA(name.c_str());
    }

    // A new, empty file.
    std::string empty()
    {
        PString name;
        PTemporaryFileServices::reserveTempFile(name);
        names.emplace_back(static_cast<char const *>(name));
        return names.back();
    }

    // A new file holding size bytes, byte i being i modulo 251.
    std::string withBytes(int size)
    {
        const std::string name = empty();
        HANDLE file = CreateFileA(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        std::vector<unsigned char> bytes(static_cast<size_t>(size));
        for (int i = 0; i < size; ++i)
            bytes[static_cast<size_t>(i)] = static_cast<unsigned char>(i % 251);
        DWORD written = 0;
        WriteFile(file, bytes.data(), static_cast<DWORD>(size), &written, nullptr);
        CloseHandle(file);
        return name;
    }

    // A name that no file has.
    std::string missing()
    {
        const std::string name = empty();
        DeleteFileA(name.c_str());
        return name;
    }

    static std::string contents(std::string const &name)
    {
        std::string bytes;
        HANDLE file = CreateFileA(name.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
        if (file == INVALID_HANDLE_VALUE)
            return "<missing>";
        char block[4096];
        DWORD got = 0;
        while (ReadFile(file, block, sizeof block, &got, nullptr) && got)
            bytes.append(block, got);
        CloseHandle(file);
        return bytes;
    }

private:
    std::vector<std::string> names;
};
