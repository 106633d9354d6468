#include "replacement_file.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>
#include <system_error>
#include <utility>

namespace {

volatile std::sig_atomic_t endRequest = 0;

void requestEnd(int /*signal*/)
{
    endRequest = 1;
}

constexpr int endSignals[] = {SIGINT, SIGTERM};

/// Unlike anything that lies there, and short, as the name itself may be as long as names can be.
std::filesystem::path makeName()
{
    std::random_device random;
    const std::uint64_t number = static_cast<std::uint64_t>(random()) << 32 | random();
    return ".xum-" + std::to_string(number) + ".tmp";
}

std::FILE* createNew(const std::filesystem::path& path)
{
#ifdef _WIN32
    return _wfopen(path.c_str(), L"wb");
#else
    return std::fopen(path.c_str(), "wbx");
#endif
}

} // namespace

ReplacementFile::ReplacementFile(std::filesystem::path place) : place(std::move(place))
{
    for (std::size_t i = 0; i < std::size(endSignals); ++i) {
        oldHandlers[i] = std::signal(endSignals[i], requestEnd);
        if (oldHandlers[i] == SIG_IGN) std::signal(endSignals[i], SIG_IGN); // as the caller of the program wants it
    }
    open();
}

ReplacementFile::~ReplacementFile()
{
    if (file != nullptr) std::fclose(file);
    std::error_code ignored;
    if (!ownName.empty()) std::filesystem::remove(ownName, ignored);
    for (std::size_t i = 0; i < std::size(endSignals); ++i) std::signal(endSignals[i], oldHandlers[i]);
}

void ReplacementFile::open()
{
    std::error_code unknown;
    const std::filesystem::file_status old = std::filesystem::symlink_status(place, unknown);
    const bool isFile = std::filesystem::is_regular_file(old);
    if (std::filesystem::exists(old) && !isFile && !std::filesystem::is_symlink(old)) {
        fail("there is something else of that name");
        return;
    }
    const std::filesystem::path name = place.parent_path() / makeName();
    file = createNew(name);
    if (file == nullptr) {
        fail(std::strerror(errno));
        return;
    }
    ownName = name;
    if (isFile) std::filesystem::permissions(name, old.permissions(), unknown);
}

bool ReplacementFile::write(const void* data, std::size_t size)
{
    if (!problem.empty()) return false;
    if (endRequest != 0) return fail("interrupted");
    return std::fwrite(data, 1, size, file) == size || fail(std::strerror(errno));
}

bool ReplacementFile::finish()
{
    if (!problem.empty()) return false;
    const bool isClosed = std::fclose(std::exchange(file, nullptr)) == 0;
    if (!isClosed) return fail(std::strerror(errno));
    if (endRequest != 0) return fail("interrupted");
    std::error_code failure;
    std::filesystem::rename(ownName, place, failure);
    if (failure) return fail(failure.message());
    ownName.clear();
    return true;
}

bool ReplacementFile::fail(const std::string& reason)
{
    problem = "cannot be written: " + reason;
    return false;
}

bool ReplacementFile::isEndRequested()
{
    return endRequest != 0;
}

std::filesystem::path behindLinks(const std::filesystem::path& path)
{
    std::error_code failure;
    if (!std::filesystem::is_symlink(path, failure)) return path;
    const std::filesystem::path target = std::filesystem::canonical(path, failure);
    return failure ? path : target;
}
