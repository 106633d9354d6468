#pragma once

#include "map_document.h"

/// Nullopt, with what is wrong, for a file that cannot be read or is no map.
std::optional<MapDocument> loadMap(const std::string& fileName, std::string& outProblem);

/// Puts a map in its place when it is whole and can be read again; until then an older file stays. False, with what is
/// wrong, when it is not saved.
bool saveMap(const MapDocument& document, const std::string& fileName, std::string& outProblem);

/// Compiles it for the game. False, with what is wrong: often the name of a brush.
bool compileMapFile(const MapDocument& document, const std::string& fileName, std::string& outProblem);

/// Where unsaved changes are kept beside a map.
std::string autosaveNameOf(const std::string& fileName);

/// Whether there is an autosave that is not older than its map, or has none.
bool hasYoungerAutosave(const std::string& fileName);

/// Parts of a map as text, as for the clipboard, and back.
std::string formatMap(const MapSource& source);
std::optional<MapSource> readMap(const std::string& text, std::string& outProblem);
