#include <xum/engine/posix_system_device.h>

#include <xum/engine/clipboard.h>
#include <xum/engine/file_listing.h>

#include <dirent.h>
#include <sys/stat.h>

#include <memory>

namespace {

struct CloseDirectory {
    void operator()(DIR* handle) const { closedir(handle); }
};

bool isDotName(const std::string& name)
{
    return name == "." || name == "..";
}

// Decides by stat, which follows links: the type that a directory entry carries may be unknown. Sockets, pipes and
// devices are neither files nor directories; a dangling link is skipped.
std::vector<DirectoryItem> readDirectory(const std::string& directory, std::string& identity)
{
    const std::string searched = directory.empty() ? "." : directory;
    struct stat status = {};
    if (stat(searched.c_str(), &status) != 0) return {};
    identity = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);

    const std::unique_ptr<DIR, CloseDirectory> handle(opendir(searched.c_str()));
    if (!handle) return {};
    std::vector<DirectoryItem> items;
    while (const dirent* entry = readdir(handle.get())) {
        const std::string name = entry->d_name;
        if (isDotName(name) || stat((directory + name).c_str(), &status) != 0) continue;
        if (S_ISDIR(status.st_mode) || S_ISREG(status.st_mode)) items.push_back({name, S_ISDIR(status.st_mode)});
    }
    return items;
}

} // namespace

bool PosixSystemDevice::createDirectory(const std::string& path)
{
    if (path.find('\0') != std::string::npos) return false; // the system would make a directory of another name
    return mkdir(path.c_str(), 0777) == 0;
}

void PosixSystemDevice::listFiles(const std::string& directory, const std::string& filter, bool recursive,
                                  FileListingCallback callback)
{
    listFilesWith(readDirectory, directory, filter, recursive, callback);
}

bool PosixSystemDevice::hasClipboardText()
{
    return clipboardHasText();
}

std::string PosixSystemDevice::getClipboardText()
{
    return clipboardText();
}

void PosixSystemDevice::setClipboardText(const std::string& text)
{
    setClipboardTextTo(text);
}
