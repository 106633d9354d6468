#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

/// A file in memory that can be opened by its name, again and again.
class MemoryFile {
public:
    MemoryFile() : descriptor(memfd_create("fuzz", 0))
    {
        if (descriptor < 0) std::abort();
        name = "/proc/self/fd/" + std::to_string(descriptor);
    }

    const std::string& getName() const { return name; }

    void write(const std::uint8_t* data, std::size_t size) const
    {
        if (ftruncate(descriptor, 0) != 0 || pwrite(descriptor, data, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }

    std::vector<std::uint8_t> read() const
    {
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(lseek(descriptor, 0, SEEK_END)));
        if (pread(descriptor, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) std::abort();
        return bytes;
    }

private:
    int descriptor; // for as long as the process lives
    std::string name;
};
