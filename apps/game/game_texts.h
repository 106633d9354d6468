#pragma once

#include <map>
#include <string>

/// What the game says on the screen, line by line in its places: "clock", "score", "message", "end", "title", "hint".
using GameTexts = std::map<std::string, std::string>;
