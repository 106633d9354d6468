#include "pack_archive.h"

#include "printable_text.h"

#include <xum/files/resource_archive_format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <unordered_map>

namespace format = ResourceArchiveFormat;

PackArchive::PackArchive(const std::string& fileName) : fileName(fileName), file((errno = 0, fileName))
{
    std::error_code unknown;
    if (file.isOpen())
        readHeader();
    else if (std::filesystem::is_directory(fileName, unknown))
        fail("is a directory");
    else
        fail(std::string("cannot be opened") + (errno != 0 ? std::string(": ") + std::strerror(errno) : ""));
}

void PackArchive::readHeader()
{
    fileSize = file.getSize();
    unsigned char header[format::headerSize] = {};
    std::memcpy(header, format::magic.data(), format::magic.size());
    const auto present = static_cast<unsigned>(std::min<std::uint64_t>(fileSize, format::headerSize));
    if (present != 0 && !file.read(header, present)) {
        fail("cannot be read");
    } else if (std::memcmp(header, format::magic.data(), format::magic.size()) != 0) {
        fail("is no archive: it does not begin with \"" + std::string(format::magic) + "\"");
        isFatalProblem = true;
    } else if (present < format::headerSize) {
        fail("is no archive: it has " + std::to_string(present) + " bytes, the header alone " +
             std::to_string(format::headerSize));
    } else {
        countInHeader = format::readU32(header + format::countOffset);
        readDirectory();
        findReplacements();
    }
}

void PackArchive::readDirectory()
{
    // No more than the file has room for, whatever the header says.
    const std::uint64_t count =
        std::min<std::uint64_t>(countInHeader, (fileSize - format::headerSize) / format::entrySize);
    unsigned char bytes[format::entrySize];
    for (std::uint64_t i = 0; i < count && file.read(bytes, sizeof bytes); ++i) {
        const format::Entry entry(bytes);
        entries.push_back({std::string(entry.name), entry.name.size() == format::nameSize, entry.offset, entry.size});
    }
}

void PackArchive::findReplacements()
{
    std::unordered_map<std::string_view, std::size_t> last;
    for (std::size_t i = entries.size(); i-- > 0;) {
        const auto [sameName, isLast] = last.emplace(entries[i].name, i);
        if (!isLast) entries[i].replacement = sameName->second;
    }
}

std::string PackArchive::findDirectoryProblem() const
{
    if (entries.size() == countInHeader) return {};
    return printable(fileName) + ": the directory is cut off: the header counts " + std::to_string(countInHeader) +
           " entries, the file has " + std::to_string(entries.size());
}

std::uint64_t PackArchive::countPresentBytes(const PackEntry& entry) const
{
    return std::min<std::uint64_t>(entry.size, fileSize - std::min(fileSize, entry.offset));
}

bool PackArchive::readData(const PackEntry& entry, const std::function<bool(const char* data, std::size_t size)>& take)
{
    std::uint64_t left = entry.size;
    if (countPresentBytes(entry) != left) return false;
    if (left == 0) return true; // wherever it is said to lie
    std::vector<char> block(std::min<std::uint64_t>(left, packBlockSize));
    file.setPosition(static_cast<std::int64_t>(entry.offset), FileSeekMode::Begin);
    while (left != 0) {
        const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
        if (!file.read(block.data(), static_cast<unsigned>(size))) return false;
        if (!take(block.data(), size)) return true;
        left -= size;
    }
    return true;
}

void PackArchive::fail(const std::string& reason)
{
    problem = printable(fileName) + ": " + reason;
}
