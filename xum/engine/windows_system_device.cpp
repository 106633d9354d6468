#include <xum/engine/windows_system_device.h>

#include <xum/engine/clipboard.h>
#include <xum/engine/file_listing.h>

#ifndef NOMINMAX // GCC's library defines it
#    define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <io.h>

namespace {

/// The process's narrow code page, which the listing calls and the narrow file streams use too: a name that was listed
/// can be handed back. False when the text is not valid in it.
bool toWide(const std::string& narrow, std::wstring& wide)
{
    wide.clear();
    if (narrow.empty()) return true;
    const int size = static_cast<int>(narrow.size());
    const int wideSize = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, narrow.data(), size, nullptr, 0);
    if (wideSize <= 0) return false;
    wide.resize(static_cast<std::size_t>(wideSize));
    return MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, narrow.data(), size, wide.data(), wideSize) == wideSize;
}

struct SearchHandle {
    intptr_t value;
    ~SearchHandle()
    {
        if (value != -1) _findclose(value);
    }
};

bool isDotName(const std::string& name)
{
    return name == "." || name == "..";
}

// No identity: a walk into a circle of junctions ends where the path grows longer than the search call accepts.
std::vector<DirectoryItem> readDirectory(const std::string& directory, std::string& /*identity*/)
{
    _finddata64i32_t found = {};
    const SearchHandle search{_findfirst64i32((directory + "*").c_str(), &found)};
    if (search.value == -1) return {};
    std::vector<DirectoryItem> items;
    do {
        const std::string name = found.name;
        if (!isDotName(name)) items.push_back({name, (found.attrib & _A_SUBDIR) != 0});
    } while (_findnext64i32(search.value, &found) == 0);
    return items;
}

} // namespace

bool WindowsSystemDevice::createDirectory(const std::string& path)
{
    if (path.find('\0') != std::string::npos) return false; // the system would make a directory of another name
    std::wstring wide;
    return toWide(path, wide) && CreateDirectoryW(wide.c_str(), nullptr) != 0;
}

void WindowsSystemDevice::listFiles(const std::string& directory, const std::string& filter, bool recursive,
                                    FileListingCallback callback)
{
    listFilesWith(readDirectory, directory, filter, recursive, callback);
}

bool WindowsSystemDevice::hasClipboardText()
{
    return clipboardHasText();
}

std::string WindowsSystemDevice::getClipboardText()
{
    return clipboardText();
}

void WindowsSystemDevice::setClipboardText(const std::string& text)
{
    setClipboardTextTo(text);
}
