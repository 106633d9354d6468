#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// One line on a terminal that says how far work has come; none for short work, and none where nobody watches.
class ProgressLine {
public:
    ProgressLine();
    ProgressLine(bool isWatched, std::chrono::milliseconds delay);

    /// Takes the line away.
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// "WORK: 45 %" of a share from 0 to 1. To be called often: it renews the line now and then.
    void show(const std::string& work, double share);

    /// Takes the line away for a message; it comes back with what is shown next.
    void clear();

private:
    bool isWatched;
    std::chrono::steady_clock::time_point next; // when it is shown or renewed
    std::size_t shownLength = 0;
};
