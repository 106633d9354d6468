#include <xum/files/sdl_file_name.h>

#ifdef _WIN32

#    ifndef NOMINMAX // GCC's library defines it
#        define NOMINMAX
#    endif
#    ifndef WIN32_LEAN_AND_MEAN
#        define WIN32_LEAN_AND_MEAN
#    endif
#    include <windows.h>

SdlFileName::SdlFileName(const std::string& name) : text(converted)
{
    converted[0] = '\0';
    if (name.size() > static_cast<std::size_t>(longest)) return;
    wchar_t wide[longest];
    const int wideSize =
        MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, name.data(), static_cast<int>(name.size()), wide, longest);
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, wideSize, converted, longest * 3, nullptr, nullptr);
    converted[wideSize > 0 && size > 0 ? size : 0] = '\0';
}

#else

SdlFileName::SdlFileName(const std::string& name) : text(name.c_str()) {}

#endif
