#include "pack_name.h"

#include <xum/files/resource_path.h>

#include <algorithm>

namespace {

bool beginsWithDrive(std::string_view name)
{
    if (name.size() < 2 || name[1] != ':') return false;
    return (name[0] >= 'a' && name[0] <= 'z') || (name[0] >= 'A' && name[0] <= 'Z');
}

std::string findSegmentProblem(std::string_view segment)
{
    if (segment.empty()) return "has an empty part between its slashes";
    if (segment == "." || segment == "..") return "has \"" + std::string(segment) + "\" for a part";
#ifdef _WIN32
    // The system drops these ends, so that ".. " would be "..", and takes what follows a colon for a stream.
    if (segment.back() == '.' || segment.back() == ' ') return "has a part that ends in a dot or a blank";
    if (segment.find(':') != std::string_view::npos) return "holds a colon";
#endif
    return {};
}

} // namespace

std::string findNameProblem(std::string_view name)
{
    if (name.empty()) return "is empty";
    if (name.front() == '/') return "is absolute";
    if (beginsWithDrive(name)) return "begins with a drive letter";
    if (name.find('\\') != std::string_view::npos) return "holds a backslash";
    // Also of "a../b", where it is no part of its own.
    if (normalizeResourceName(std::string(name)) != name)
        return "holds \"../\", which is taken out of every name that is asked for";
    for (std::size_t begin = 0; begin <= name.size();) {
        const std::size_t slash = std::min(name.find('/', begin), name.size());
        if (std::string problem = findSegmentProblem(name.substr(begin, slash - begin)); !problem.empty())
            return problem;
        begin = slash + 1;
    }
    return {};
}
