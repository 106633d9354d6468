#pragma once

#include <array>
#include <cstddef>
#include <list>
#include <string>
#include <vector>

class ConfigFile;

/// What a program is made of.
struct ProgramDescription {
    static constexpr std::size_t shaderKinds = 4; // vertex, geometry, fragment, compute, as ShaderType numbers them

    /// Reads the lists from the root section; a missing one is empty.
    explicit ProgramDescription(const ConfigFile& config);

    std::array<std::vector<std::string>, shaderKinds> shaders; ///< file names by kind
    std::list<std::string> inputs;
    std::list<std::string> outputs;
};

/// The names in a list: each match of ([^,^$]+)(,|$|\s)+ gives its first group. Commas separate; '^' and '$' belong to
/// no name; white space is part of a name, also at its end, but is eaten behind a comma.
std::vector<std::string> splitNames(const std::string& list);
