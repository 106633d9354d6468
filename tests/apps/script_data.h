#pragma once

#include "file_contents.h"

#include <filesystem>
#include <string>

/// A directory with the scripts of the engine, and rules of a test's own or, without a text, the game's. Ends with '/'.
inline std::string makeScriptData(const std::string& rules = "")
{
    namespace fs = std::filesystem;
    fs::remove_all("scripts");
    fs::create_directory("scripts");
    fs::copy(XUM_DATA_DIRECTORY "/lisp", "scripts/lisp", fs::copy_options::recursive);
    if (!rules.empty()) writeFileContents("scripts/lisp/game.lisp", rules);
    return "scripts/";
}
