#include "path_name.h"

#ifdef _WIN32

#    ifndef NOMINMAX // GCC's library defines it
#        define NOMINMAX
#    endif
#    define WIN32_LEAN_AND_MEAN
#    include <windows.h>

#    include <clocale>

void readNarrowNamesAsTheSystemDoes()
{
    std::setlocale(LC_CTYPE, ".ACP");
}

std::string nameOf(const std::filesystem::path& path)
{
    const std::wstring wide = path.generic_wstring();
    const int wideSize = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), wideSize, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

#else

void readNarrowNamesAsTheSystemDoes() {}

std::string nameOf(const std::filesystem::path& path)
{
    return path.generic_string();
}

#endif

std::filesystem::path pathOfUtf8(const std::string& text)
{
    return std::filesystem::u8path(text);
}
