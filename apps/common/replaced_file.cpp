#include "replaced_file.h"

#include "path_name.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// What a link leads to is replaced, not the link.
fs::path followLink(const fs::path& place)
{
    std::error_code failure;
    if (!fs::is_symlink(place, failure)) return place;
    const fs::path target = fs::weakly_canonical(place, failure);
    return failure ? place : target;
}

std::string findObstacle(const fs::path& place)
{
    std::error_code failure;
    if (fs::is_directory(place, failure)) return "it is a directory";
    if (fs::exists(place, failure) && !fs::is_regular_file(place, failure)) return "it is no plain file";
    const fs::path parent = place.has_parent_path() ? place.parent_path() : fs::path(".");
    if (!fs::is_directory(parent, failure)) return "there is no directory " + nameOf(parent);
    return {};
}

/// Writes the other file and puts it in the place; says what is wrong.
std::string tryToReplace(const fs::path& place, const fs::path& other,
                         const std::function<bool(const std::string& otherName)>& write)
{
    if (!std::ofstream(other)) return "cannot make " + nameOf(other) + " beside it";
    if (!write(nameOf(other))) return "the disk may be full";
    std::error_code failure;
    const fs::perms permissions = fs::status(place, failure).permissions();
    if (!failure && fs::exists(place, failure)) fs::permissions(other, permissions, failure); // as the older one's
    fs::rename(other, place, failure);
    return failure ? failure.message() : "";
}

} // namespace

bool replaceFile(const std::string& fileName, const std::function<bool(const std::string& otherName)>& write,
                 std::string& outProblem)
{
    const fs::path place = followLink(fileName);
    std::string obstacle = findObstacle(place);
    if (obstacle.empty()) {
        fs::path other = place;
        other += ".new";
        std::error_code ignored;
        const bool isOurs = !fs::is_directory(other, ignored);
        obstacle = tryToReplace(place, other, write);
        if (obstacle.empty()) return true;
        if (isOurs) fs::remove(other, ignored);
    }
    outProblem = "cannot write " + fileName + ": " + obstacle;
    return false;
}
