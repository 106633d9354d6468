#include <xum/files/read_file.h>

#include <xum/files/file.h>

#include <limits>
#include <new>

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

bool resizeIfPossible(std::vector<unsigned char>& data, std::uint64_t size)
{
    if (size > data.max_size()) return false;
    try {
        data.resize(static_cast<std::size_t>(size));
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}
