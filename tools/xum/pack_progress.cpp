#include "pack_progress.h"

#include <cstdio>
#include <utility>

#ifdef _WIN32
#    include <io.h>
#else
#    include <unistd.h>
#endif

namespace {

constexpr std::chrono::milliseconds usualDelay(1000);
constexpr std::chrono::milliseconds renewal(100);

bool isTerminal()
{
#ifdef _WIN32
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

} // namespace

PackProgress::PackProgress(std::string work, std::uint64_t total)
    : PackProgress(std::move(work), total, isTerminal(), usualDelay)
{}

PackProgress::PackProgress(std::string work, std::uint64_t total, bool isWatched, std::chrono::milliseconds delay)
    : work(std::move(work)), total(total), isWatched(isWatched), next(std::chrono::steady_clock::now() + delay)
{}

PackProgress::~PackProgress()
{
    clear();
}

void PackProgress::add(std::uint64_t bytes)
{
    done += bytes;
    const auto now = std::chrono::steady_clock::now();
    if (!isWatched || now < next) return;
    next = now + renewal;
    const double share = total == 0 ? 1.0 : static_cast<double>(done) / static_cast<double>(total);
    const std::string line = work + ": " + std::to_string(static_cast<int>(100.0 * share)) + " %";
    std::fprintf(stderr, "\r%s", line.c_str());
    std::fflush(stderr);
    shownLength = line.size();
}

void PackProgress::clear()
{
    if (shownLength == 0) return;
    std::fprintf(stderr, "\r%s\r", std::string(shownLength, ' ').c_str());
    std::fflush(stderr);
    shownLength = 0;
}
