#pragma once

#include <xum/files/config_section.h>

#include <memory>
#include <optional>
#include <string>

/// A configuration that has been read.
struct ConfigText {
    std::string name; ///< of the file for messages; "<stdin>" for standard input
    std::string text;
    std::unique_ptr<ConfigSection> root; ///< null for an empty text
};

/// Reads a file, or standard input for "-". Without a value when it cannot be read or is no configuration; that is
/// reported, the latter as "FILE:LINE:COLUMN: the engine's message". Of an empty text the engine's warning is reported.
std::optional<ConfigText> readConfig(const std::string& fileName);
