#include "replaced_file.h"

#include <filesystem>
#include <system_error>

bool replaceFile(const std::string& fileName, const std::function<bool(const std::string& otherName)>& write,
                 std::string& outProblem)
{
    const std::filesystem::path place = fileName;
    std::error_code failure;
    if (std::filesystem::is_directory(place, failure)) {
        outProblem = "cannot write " + fileName + ": it is a directory";
        return false;
    }
    const std::filesystem::path parent = place.has_parent_path() ? place.parent_path() : std::filesystem::path(".");
    if (!std::filesystem::is_directory(parent, failure)) {
        outProblem = "cannot write " + fileName + ": there is no directory " + parent.generic_string();
        return false;
    }
    const std::string otherName = fileName + ".new";
    const bool isWhole = write(otherName);
    if (isWhole) {
        // What a link leads to is replaced, not the link.
        const std::filesystem::path target =
            std::filesystem::is_symlink(place, failure) ? std::filesystem::weakly_canonical(place, failure) : place;
        std::filesystem::rename(otherName, target, failure);
        if (!failure) return true;
        outProblem = "cannot write " + fileName + ": " + failure.message();
    } else {
        outProblem = "cannot write " + fileName + ": the disk is full, or its directory cannot be written to";
    }
    std::filesystem::remove(otherName, failure);
    return false;
}
