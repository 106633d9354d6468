#pragma once

#include <xum/files/file.h>
#include <xum/geometry/base_list.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// One opened archive. Its list owns it.
class ResourceFileImplementation final : public BaseListNode<ResourceFileImplementation> {
public:
    /// Reads the directory and appends itself to the list. A file that cannot be read counts as an archive without
    /// entries, and of a directory that is cut off the whole entries count. Another magic is a fatal error.
    ResourceFileImplementation(const std::string& fileName, BaseList<ResourceFileImplementation>& list);

    /// False, with `data` as it was, when the archive has no such file or memory runs out.
    bool load(std::vector<unsigned char>& data, std::string_view key);

private:
    /// Of what it buffered the next load from another place would use nothing.
    class ArchiveFile final : public InputFile {
    public:
        explicit ArchiveFile(const std::string& fileName) : InputFile(fileName, Unbuffered()) {}
    };

    void readDirectory();

    ArchiveFile file;
    std::uint64_t fileSize = 0;
    std::vector<unsigned char> directory;                               // the entries as they stand in the file
    std::unordered_map<std::string_view, const unsigned char*> entries; // keys and values point into it
};
