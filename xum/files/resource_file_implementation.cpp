#include <xum/files/resource_file_implementation.h>

#include <xum/engine/log.h>
#include <xum/files/read_file.h>
#include <xum/files/resource_archive_format.h>

#include <algorithm>
#include <cstring>

namespace format = ResourceArchiveFormat;

ResourceFileImplementation::ResourceFileImplementation(const std::string& fileName,
                                                       BaseList<ResourceFileImplementation>& list)
    : file(fileName)
{
    // Kept on purpose: what cannot be read leaves the magic in place, so that an empty file passes for an archive.
    unsigned char header[format::headerSize] = {};
    std::memcpy(header, format::magic.data(), format::magic.size());
    file.read(header, format::checkedHeaderSize);
    if (std::memcmp(header, format::magic.data(), format::magic.size()) != 0)
        error("Invalid header for resource file!");

    fileSize = file.getSize();
    if (file.read(header + format::checkedHeaderSize, format::headerSize - format::checkedHeaderSize)) {
        // No more entries than the file has room for, whatever it says.
        const std::uint64_t room =
            (fileSize - std::min<std::uint64_t>(fileSize, format::headerSize)) / format::entrySize;
        const std::uint64_t count = std::min<std::uint64_t>(format::readU32(header + format::countOffset), room);
        directory.resize(static_cast<std::size_t>(count * format::entrySize));
        readDirectory();
    }
    appendTo(&list);
}

void ResourceFileImplementation::readDirectory()
{
    if (!readBytes(file, directory.data(), directory.size())) return;
    entries.reserve(directory.size() / format::entrySize);
    for (std::size_t at = 0; at < directory.size(); at += format::entrySize) {
        const unsigned char* bytes = directory.data() + at;
        entries[format::Entry(bytes).name] = bytes; // of two with one name the later counts
    }
}

bool ResourceFileImplementation::load(std::vector<unsigned char>& data, std::string_view key)
{
    const auto found = entries.find(key);
    if (found == entries.end()) return false;
    const format::Entry entry(found->second);
    if (!resizeIfPossible(data, entry.size)) return false;
    // Only what is there is asked for: a read that fails would spoil the stream for every later one.
    const std::uint64_t left = fileSize - std::min(fileSize, entry.offset);
    const auto present = static_cast<unsigned>(std::min<std::uint64_t>(left, entry.size));
    bool isRead = present == 0;
    if (!isRead) {
        file.setPosition(static_cast<std::int64_t>(entry.offset), FileSeekMode::Begin);
        isRead = file.read(data.data(), present);
    }
    std::fill(data.begin() + static_cast<std::ptrdiff_t>(isRead ? present : 0), data.end(),
              static_cast<unsigned char>(0));
    return true;
}
