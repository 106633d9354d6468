#pragma once

#include "progress_line.h"

#include <cstdint>
#include <string>
#include <utility>

/// A progress line for work on so many bytes.
class PackProgress {
public:
    PackProgress(std::string work, std::uint64_t total) : work(std::move(work)), total(total) {}
    PackProgress(std::string work, std::uint64_t total, bool isWatched, std::chrono::milliseconds delay)
        : line(isWatched, delay), work(std::move(work)), total(total)
    {}

    void add(std::uint64_t bytes)
    {
        done += bytes;
        line.show(work, total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total));
    }

    /// Takes the line away for a message; the next bytes bring it back.
    void clear() { line.clear(); }

private:
    ProgressLine line;
    std::string work;
    std::uint64_t total;
    std::uint64_t done = 0;
};
