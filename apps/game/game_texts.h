#pragma once

#include <map>
#include <string>

/// What the game says on the screen, line by line in its places: "clock", "score",
/// "message", "notice" (of the program, not of the rules), "end", "title", "hint" and "help".
using GameTexts = std::map<std::string, std::string>;
