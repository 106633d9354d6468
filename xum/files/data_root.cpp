#include <xum/files/data_root.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#    ifndef NOMINMAX // GCC's library defines it
#        define NOMINMAX
#    endif
#    ifndef WIN32_LEAN_AND_MEAN
#        define WIN32_LEAN_AND_MEAN
#    endif
#    include <windows.h>
#else
#    include <dlfcn.h>
#endif

namespace {

namespace fs = std::filesystem;

#ifdef _WIN32

/// In the process's narrow code page, which the file streams use; the library's own conversion is to UTF-8. Empty for a
/// name that the code page has not.
std::string toNarrow(std::wstring name)
{
    for (wchar_t& c : name)
        if (c == L'\\') c = L'/';
    const int wideSize = static_cast<int>(name.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, name.data(), wideSize, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, name.data(), wideSize, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

fs::path chosenDirectory()
{
    const wchar_t* chosen = _wgetenv(L"XUM_DATA_ROOT");
    return chosen != nullptr ? fs::path(chosen) : fs::path();
}

#else

std::string toNarrow(std::string name)
{
    return name;
}

fs::path chosenDirectory()
{
    const char* chosen = std::getenv("XUM_DATA_ROOT");
    return chosen != nullptr ? fs::path(chosen) : fs::path();
}

#endif

/// Without "." and ".."; what ".." leads out of may be a link, which only the file system can tell.
fs::path withoutDetours(const fs::path& path)
{
    std::error_code failure;
    const bool leadsUp = std::find(path.begin(), path.end(), "..") != path.end();
    const fs::path real = leadsUp ? fs::weakly_canonical(path, failure) : path;
    return (failure ? path : real).lexically_normal();
}

std::string asDirectory(const fs::path& path)
{
    std::error_code failure;
    const fs::path absolute = fs::absolute(path, failure);
    std::string text = toNarrow(withoutDetours(failure ? path : absolute).native());
    if (text.empty() || text.back() != '/') text += '/';
    return text;
}

bool isDirectory(const fs::path& path)
{
    std::error_code failure;
    return fs::is_directory(path, failure);
}

/// The directory of the library's own file; empty when it cannot be told.
fs::path libraryDirectory()
{
#ifdef _WIN32
    HMODULE module = nullptr;
    const DWORD flags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (GetModuleHandleExW(flags, reinterpret_cast<LPCWSTR>(&defaultDataRoot), &module) == 0) return {};
    wchar_t name[4096];
    const DWORD size = GetModuleFileNameW(module, name, 4096);
    return size == 0 || size == 4096 ? fs::path() : fs::path(name).parent_path();
#else
    Dl_info info = {};
    if (dladdr(reinterpret_cast<const void*>(&defaultDataRoot), &info) == 0 || info.dli_fname == nullptr) return {};
    const fs::path name = info.dli_fname;
    if (name.has_parent_path()) return name.parent_path();
    // Linked into a program that was found through PATH: its name says nothing, but the system knows the file.
    std::error_code failure;
    return fs::read_symlink("/proc/self/exe", failure).parent_path();
#endif
}

} // namespace

std::string defaultDataRoot()
{
    const fs::path chosen = chosenDirectory();
    if (!chosen.empty()) return asDirectory(chosen);

    const fs::path compiledIn = XUM_COMPILED_DATA_ROOT;
    if (isDirectory(compiledIn)) return asDirectory(compiledIn);

    std::error_code failure;
    const fs::path library = fs::canonical(libraryDirectory(), failure); // it may be reached through links
    const fs::path besideLibrary = (library / XUM_RELATIVE_DATA_ROOT).lexically_normal();
    return asDirectory(!failure && isDirectory(besideLibrary) ? besideLibrary : compiledIn);
}
