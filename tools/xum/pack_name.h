#pragma once

#include <string>
#include <string_view>

/// What is wrong with the name of a file in an archive, as in "the name holds a backslash"; empty for a good name. A
/// bad one is never asked for by a load, or means another file, or one outside of a directory, when it is extracted.
std::string findNameProblem(std::string_view name);
