#include "replaced_import.h"

#ifndef NOMINMAX // GCC's library defines it
#    define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstring>

namespace {

template <class Type>
Type* at(HMODULE module, std::size_t offset)
{
    return reinterpret_cast<Type*>(reinterpret_cast<char*>(module) + offset);
}

void write(IMAGE_THUNK_DATA& entry, void* function)
{
    DWORD protection = 0;
    VirtualProtect(&entry, sizeof(entry), PAGE_READWRITE, &protection);
    entry.u1.Function = reinterpret_cast<ULONGLONG>(function);
    VirtualProtect(&entry, sizeof(entry), protection, &protection);
}

// A module starts with its headers, in memory as on the disk. They lead to one descriptor for each library that it
// imports from, with two tables of the same order: names, and the addresses that were found for them.
bool replaceIn(HMODULE module, const char* name, void* replacement)
{
    if (module == nullptr) return false;
    const auto* headers =
        at<IMAGE_NT_HEADERS>(module, static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.Size == 0) return false;
    bool isFound = false;
    for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, imports.VirtualAddress); library->Name != 0; ++library) {
        const auto* names = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* addresses = at<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++addresses) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* import = at<IMAGE_IMPORT_BY_NAME>(module, names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) != 0) continue;
            write(*addresses, replacement);
            isFound = true;
        }
    }
    return isFound;
}

} // namespace

bool replaceImport(const char* name, void* replacement)
{
    const bool isInEngine = replaceIn(GetModuleHandleW(L"xum-engine.dll"), name, replacement);
    return replaceIn(GetModuleHandleW(nullptr), name, replacement) || isInEngine;
}
