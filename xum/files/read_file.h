#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

/// Reads a whole file. False, with `out` untouched, for what cannot be opened or read: a directory, a missing file, a
/// name that holds a NUL, more bytes than an int counts.
bool readFile(const std::string& fileName, std::vector<char>& out);

/// Reads the next `size` bytes of an InputFile or an input stream, also more than one read can ask for. False when
/// there are not as many; what there is was read. False also for no bytes of a file that has failed before: one whose
/// size could not be found out.
template <class Source>
bool readBytes(Source& source, void* out, std::uint64_t size)
{
    constexpr std::uint64_t largestRead = 1U << 30;
    char* next = static_cast<char*>(out);
    do { // at least once: a file that has failed has no bytes at all
        const std::uint64_t part = std::min(size, largestRead);
        if (!source.read(next, static_cast<unsigned>(part))) return false;
        next += part;
        size -= part;
    } while (size > 0);
    return true;
}

/// False when there is no memory for so many bytes; then `data` stays as it was.
bool resizeIfPossible(std::vector<unsigned char>& data, std::uint64_t size);
