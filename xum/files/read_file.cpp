#include <xum/files/read_file.h>

#include <xum/files/file.h>

#include <algorithm>
#include <limits>

bool readFile(const std::string& fileName, std::vector<char>& out)
{
    InputFile file(fileName);
    const std::uint64_t size = file.getSize();
    if (!file.isOpen() || size > static_cast<std::uint64_t>(std::numeric_limits<int>::max())) return false;
    std::vector<char> bytes(static_cast<std::size_t>(size));
    if (!readBytes(file, bytes.data(), size)) return false;
    out.swap(bytes);
    return true;
}

bool readBytes(InputFile& file, void* out, std::uint64_t size)
{
    constexpr std::uint64_t largestRead = 1U << 30;
    char* next = static_cast<char*>(out);
    while (size > 0) {
        const std::uint64_t part = std::min(size, largestRead);
        if (!file.read(next, static_cast<unsigned>(part))) return false;
        next += part;
        size -= part;
    }
    return true;
}
