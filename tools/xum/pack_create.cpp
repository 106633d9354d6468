#include "pack_create.h"

#include "pack_archive.h"
#include "pack_name.h"
#include "pack_progress.h"
#include "printable_text.h"
#include "replacement_file.h"
#include "report.h"

#include <xum/files/file.h>
#include <xum/files/resource_archive_format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <system_error>

namespace fs = std::filesystem;
namespace format = ResourceArchiveFormat;

// ---- what to pack -------------------------------------------------------------------------------------------------

namespace {

/// UTF-8 everywhere, so that an archive does not depend on the machine that made it.
std::string textOf(const fs::path& path)
{
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

class FileFinder {
public:
    FileFinder(const fs::path& archive, std::vector<FileToPack>& out) : archive(archive), out(out)
    {
        std::error_code unknown;
        archiveDirectory = fs::canonical(fs::absolute(archive).parent_path(), unknown);
        hasOldArchive = fs::exists(archive, unknown);
    }

    /// `prefix` is the directory's name in the archive, with its slash.
    void visitDirectory(const fs::path& directory, const std::string& prefix)
    {
        std::error_code failure;
        const fs::path place = fs::canonical(directory, failure);
        if (failure) {
            refuse(directory, "cannot be read: " + failure.message());
        } else if (place == archiveDirectory) {
            refuse(archive, "lies among the files to pack");
        } else if (std::find(openDirectories.begin(), openDirectories.end(), place) != openDirectories.end()) {
            leaveOut(directory, "a link to a directory around it");
        } else {
            openDirectories.push_back(place);
            visitItems(directory, prefix);
            openDirectories.pop_back();
        }
    }

    bool isRefused() const { return hasProblem; }

private:
    void visitItems(const fs::path& directory, const std::string& prefix)
    {
        std::vector<fs::path> items;
        std::error_code failure;
        for (fs::directory_iterator at(directory, failure); !failure && at != fs::directory_iterator();
             at.increment(failure))
            items.push_back(at->path());
        if (failure) refuse(directory, "cannot be read: " + failure.message());
        std::sort(items.begin(), items.end()); // for the order of the messages
        for (const fs::path& item : items) visit(item, prefix + textOf(item.filename()));
    }

    void visit(const fs::path& path, const std::string& name)
    {
        std::error_code failure;
        const fs::file_status status = fs::status(path, failure);
        if (fs::is_directory(status))
            visitDirectory(path, name + "/");
        else if (fs::is_regular_file(status))
            visitFile(path, name);
        else if (fs::exists(status))
            leaveOut(path, "neither a file nor a directory");
        else
            refuse(path, "cannot be read: " + failure.message());
    }

    void visitFile(const fs::path& path, const std::string& name)
    {
        std::error_code failure;
        const std::uintmax_t size = fs::file_size(path, failure);
        const std::string problem = findNameProblem(name);
        if (name.size() >= format::nameSize)
            refuse(path, "the name \"" + printable(name) + "\" has more than " + std::to_string(format::nameSize - 1) +
                             " bytes");
        else if (!problem.empty())
            refuse(path, "the name \"" + printable(name) + "\" " + problem);
        else if (hasOldArchive && fs::equivalent(path, archive, failure))
            refuse(path, "is the archive itself");
        else if (failure)
            refuse(path, "cannot be read: " + failure.message());
        else if (errno = 0; !InputFile(path.native()).isOpen())
            refuse(path, std::string("cannot be opened: ") + std::strerror(errno));
        else if (size > std::numeric_limits<std::uint32_t>::max())
            refuse(path, "is too large for an archive (4 GiB or more)");
        else
            out.push_back({name, path, static_cast<std::uint32_t>(size)});
    }

    void leaveOut(const fs::path& path, const char* reason)
    {
        report(printable(textOf(path)) + ": left out: " + reason);
    }

    void refuse(const fs::path& path, const std::string& reason)
    {
        report(printable(textOf(path)) + ": " + reason);
        hasProblem = true;
    }

    const fs::path& archive;
    std::vector<FileToPack>& out;
    fs::path archiveDirectory;
    bool hasOldArchive = false;
    std::vector<fs::path> openDirectories; // the one that is visited and those around it, without links
    bool hasProblem = false;
};

} // namespace

bool findFilesToPack(const fs::path& directory, const fs::path& archive, std::vector<FileToPack>& out,
                     std::uint64_t largestCount)
{
    std::error_code unknown;
    if (fs::exists(directory, unknown) && !fs::is_directory(directory, unknown)) {
        report(printable(textOf(directory)) + ": is no directory");
        return false;
    }
    FileFinder finder(archive, out);
    finder.visitDirectory(directory, "");
    if (out.size() > largestCount) {
        report(printable(textOf(directory)) + ": holds too many files for an archive (" + std::to_string(out.size()) +
               ", at most " + std::to_string(largestCount) + ")");
        return false;
    }
    std::sort(out.begin(), out.end(), [](const FileToPack& a, const FileToPack& b) { return a.name < b.name; });
    return !finder.isRefused();
}

// ---- packing ------------------------------------------------------------------------------------------------------

namespace {

class Packer {
public:
    Packer(const fs::path& archive, const std::vector<FileToPack>& files)
        : out(archive), files(files), progress("packing", totalSize(files))
    {}

    bool pack()
    {
        bool isPacked = writeHeader() && writeDirectory();
        for (const FileToPack& file : files) isPacked = isPacked && copy(file);
        return isPacked && out.finish();
    }

    /// Of the archive, when it was not that of a file.
    const std::string& getProblem() const { return out.getProblem(); }

private:
    static std::uint64_t totalSize(const std::vector<FileToPack>& files)
    {
        std::uint64_t total = 0;
        for (const FileToPack& file : files) total += file.size;
        return total;
    }

    static void put(unsigned char* bytes, std::uint64_t value, int size)
    {
        for (int i = 0; i < size; ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i) & 0xFF);
    }

    bool writeHeader()
    {
        unsigned char header[format::headerSize] = {};
        std::memcpy(header, format::magic.data(), format::magic.size());
        put(header + format::countOffset, files.size(), 4);
        return out.write(header, sizeof header);
    }

    bool writeDirectory()
    {
        std::uint64_t offset = format::headerSize + files.size() * format::entrySize;
        for (const FileToPack& file : files) {
            unsigned char entry[format::entrySize] = {};
            file.name.copy(reinterpret_cast<char*>(entry), format::nameSize - 1);
            put(entry + format::offsetOffset, offset, 8);
            put(entry + format::sizeOffset, file.size, 4);
            if (!out.write(entry, sizeof entry)) return false;
            offset += file.size;
        }
        return true;
    }

    bool copy(const FileToPack& file)
    {
        InputFile in(file.path.native());
        std::uint64_t left = in.isOpen() ? in.getSize() : 0;
        bool isAsBefore = in.isOpen() && left == file.size;
        while (isAsBefore && left != 0) {
            const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(left, block.size()));
            isAsBefore = in.read(block.data(), static_cast<unsigned>(size));
            if (isAsBefore && !out.write(block.data(), size)) return false;
            left -= size;
            progress.add(size);
        }
        if (isAsBefore) return true;
        progress.clear();
        report(printable(textOf(file.path)) + ": has changed meanwhile, or cannot be read any more");
        return false;
    }

    ReplacementFile out;
    const std::vector<FileToPack>& files;
    PackProgress progress;
    std::vector<char> block = std::vector<char>(packBlockSize);
};

} // namespace

bool createArchive(const std::string& archive, const std::string& directory)
{
    const fs::path place = behindLinks(archive);
    std::vector<FileToPack> files;
    if (!findFilesToPack(directory, place, files)) return false;
    Packer packer(place, files);
    if (packer.pack()) return true;
    if (!packer.getProblem().empty()) report(printable(archive) + ": " + packer.getProblem());
    return false;
}
