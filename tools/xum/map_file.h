#pragma once

#include <memory>
#include <string>

class CompiledMap;

/// Writes a map in the form of CompiledMap::writeToFile, and puts it in its place when it is whole. Empty, or why it
/// cannot be written.
std::string writeMapFile(const std::string& fileName, const CompiledMap& map);

/// Reads a map more strictly than the engine: a file that ends early or has something behind its last mesh is damaged.
/// Null when it cannot be read; then `problem` says why.
std::unique_ptr<CompiledMap> readMapFile(const std::string& fileName, std::string& problem);
