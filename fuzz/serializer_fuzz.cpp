#include "memory_file.h"
#include "survivable_errors.h"

#include <xum/files/file_serializer.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

// Each byte of an input is the size of the next part; its second half is read in those sizes, and then written in them.

namespace {

const MemoryFile* file = nullptr;

/// From -8 to 247: parts of no bytes must do nothing.
int sizeOfPart(std::uint8_t byte)
{
    return static_cast<int>(byte) - 8;
}

std::size_t countOf(int size)
{
    return static_cast<std::size_t>(std::max(size, 0));
}

void checkReading(const std::vector<std::uint8_t>& sizes, const std::vector<std::uint8_t>& content)
{
    file->write(content.data(), content.size());
    FileDeserializer deserializer(file->getName());
    std::size_t position = 0;
    for (const std::uint8_t byte : sizes) {
        const int size = sizeOfPart(byte);
        std::vector<std::uint8_t> expected(countOf(size), 0xAA); // what the file has not stays as it was
        std::vector<std::uint8_t> part = expected;
        const std::size_t present = std::min(part.size(), content.size() - position);
        std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(position), present, expected.begin());
        position += present;
        deserializer.read(reinterpret_cast<char*>(part.data()), size);
        abortIf(part != expected, "other bytes were read");
    }
    abortIf(deserializer.failed(), "the end counts as a failure");
}

void checkWriting(const std::vector<std::uint8_t>& sizes, const std::vector<std::uint8_t>& content)
{
    std::vector<std::uint8_t> expected;
    {
        FileSerializer serializer(file->getName());
        for (const std::uint8_t byte : sizes) {
            std::vector<std::uint8_t> part(countOf(sizeOfPart(byte)), byte);
            std::copy_n(content.begin(), std::min(part.size(), content.size()), part.begin());
            serializer.write(reinterpret_cast<const char*>(part.data()), sizeOfPart(byte));
            expected.insert(expected.end(), part.begin(), part.end());
        }
        abortIf(serializer.failed(), "writing failed");
    }
    abortIf(file->read() != expected, "other bytes were written");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    makeErrorsSurvivable();
    file = new MemoryFile;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::uint8_t> sizes(data, data + size / 2);
    const std::vector<std::uint8_t> content(data + size / 2, data + size);
    checkReading(sizes, content);
    checkWriting(sizes, content);
    return 0;
}
