#pragma once

#include <cstddef>
#include <string_view>

class CompiledMap;
class Serializer;

/// The start of a compiled map: the magic in a header of otherwise zeros.
namespace CompiledMapFormat {
constexpr std::string_view magic = "!XumMap";
constexpr std::size_t headerSize = 12;
}

/// Writes a map as its file holds it. False when the serializer has failed.
bool writeCompiledMap(Serializer& out, const CompiledMap& map);
