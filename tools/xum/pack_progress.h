#pragma once

#include <chrono>
#include <cstdint>
#include <string>

/// One line on a terminal that says how far work has come; none for short work, and none where nobody watches.
class PackProgress {
public:
    /// "WORK: 45 %" of so many bytes.
    PackProgress(std::string work, std::uint64_t total);
    PackProgress(std::string work, std::uint64_t total, bool isWatched, std::chrono::milliseconds delay);

    /// Takes the line away.
    ~PackProgress();
    PackProgress(const PackProgress&) = delete;
    PackProgress& operator=(const PackProgress&) = delete;

    void add(std::uint64_t bytes);

    /// Takes the line away for a message; the next bytes bring it back.
    void clear();

private:
    std::string work;
    std::uint64_t total;
    std::uint64_t done = 0;
    bool isWatched;
    std::chrono::steady_clock::time_point next; // when it is shown or renewed
    std::size_t shownLength = 0;
};
