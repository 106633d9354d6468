#include <xum/files/data_root.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>

#ifdef _WIN32
#    ifndef NOMINMAX // GCC's library defines it
#        define NOMINMAX
#    endif
#    define WIN32_LEAN_AND_MEAN
#    include <windows.h>
#else
#    include <dlfcn.h>
#endif

namespace {

namespace fs = std::filesystem;

// Paths go in and out in the platform's narrow encoding, the one that the file streams use.
std::string asDirectory(const fs::path& path)
{
    std::error_code failure;
    const fs::path absolute = fs::absolute(path, failure);
    std::string text = (failure ? path : absolute).lexically_normal().generic_string();
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
    const char* chosen = std::getenv("XUM_DATA_ROOT");
    if (chosen != nullptr && *chosen != '\0') return asDirectory(chosen);

    const fs::path compiledIn = XUM_COMPILED_DATA_ROOT;
    if (isDirectory(compiledIn)) return asDirectory(compiledIn);

    const fs::path library = libraryDirectory();
    if (!library.empty() && isDirectory(library / XUM_RELATIVE_DATA_ROOT))
        return asDirectory(library / XUM_RELATIVE_DATA_ROOT);
    return asDirectory(compiledIn);
}
