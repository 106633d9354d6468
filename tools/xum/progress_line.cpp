#include "progress_line.h"

#include <algorithm>
#include <cstdio>

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

ProgressLine::ProgressLine() : ProgressLine(isTerminal(), usualDelay) {}

ProgressLine::ProgressLine(bool isWatched, std::chrono::milliseconds delay)
    : isWatched(isWatched), next(std::chrono::steady_clock::now() + delay)
{}

ProgressLine::~ProgressLine()
{
    clear();
}

void ProgressLine::show(const std::string& work, double share)
{
    if (!isWatched) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < next) return;
    next = now + renewal;
    const std::string line = work + ": " + std::to_string(static_cast<int>(100.0 * share)) + " %";
    const std::string rest(shownLength - std::min(shownLength, line.size()), ' '); // of a longer line
    std::fprintf(stderr, "\r%s%s", line.c_str(), rest.c_str());
    std::fflush(stderr);
    shownLength = line.size() + rest.size();
}

void ProgressLine::clear()
{
    if (shownLength == 0) return;
    std::fprintf(stderr, "\r%s\r", std::string(shownLength, ' ').c_str());
    std::fflush(stderr);
    shownLength = 0;
}
