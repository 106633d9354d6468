#include "level_land.h"

#include <xum/files/config_section.h>
#include <xum/geometry/terrain.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>

namespace {

constexpr int largest = 256; // cells, to each side
constexpr int widest = 1000; // from point to point
constexpr float farthest = 1e6f;

/// The numbers of an entry; false when there are not just as many.
template <class Number>
bool read(const ConfigSection& section, const char* name, std::size_t count, std::vector<Number>& out)
{
    const ConfigEntry* const entry = section.getEntry(name, false);
    if (entry == nullptr) return false;
    std::istringstream numbers(entry->getValue());
    out.clear();
    for (Number number; out.size() <= count && numbers >> number;) out.push_back(number);
    const auto isReasonable = [](Number number) { return std::fabs(static_cast<float>(number)) <= farthest; };
    return out.size() == count && std::all_of(out.begin(), out.end(), isReasonable);
}

} // namespace

std::optional<LevelLand> readLand(const ConfigSection& section)
{
    std::vector<int> size;
    std::vector<int> spacing = {1};
    std::vector<float> origin = {0, 0, 0};
    std::vector<float> scale = {1};
    std::vector<float> heights;
    const auto isMissing = [&](const char* name) { return section.getEntry(name, false) == nullptr; };
    const bool isGood = read(section, "size", 2, size) && size[0] >= 1 && size[1] >= 1 && size[0] <= largest &&
                        size[1] <= largest && (isMissing("spacing") || read(section, "spacing", 1, spacing)) &&
                        spacing[0] >= 1 && spacing[0] <= widest &&
                        (isMissing("origin") || read(section, "origin", 3, origin)) &&
                        (isMissing("scale") || read(section, "scale", 1, scale));
    if (!isGood) return std::nullopt;
    const auto columns = 2 * static_cast<std::size_t>(size[0]) + 1;
    if (!read(section, "heights", columns * (2 * static_cast<std::size_t>(size[1]) + 1), heights)) return std::nullopt;

    LevelLand land;
    if (const ConfigEntry* const texture = section.getEntry("texture", false)) {
        const auto known = std::find(textureFileNames.begin(), textureFileNames.end(), texture->getValue());
        if (known == textureFileNames.end()) return std::nullopt;
        land.texture = static_cast<TextureName>(known - textureFileNames.begin());
    }
    auto terrain = std::make_shared<Terrain>(size[0], size[1], spacing[0]);
    const Vector3<float> offset = {origin[0], origin[1], origin[2]};
    terrain->modify(
        [&](int x, int y, const Vector3<float>& position) {
            const float height = heights[static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x)];
            return position + offset + Vector3<float>(0, 0, height);
        },
        0);
    land.terrain = std::move(terrain);
    land.repeats = scale[0] * static_cast<float>(2 * std::max(size[0], size[1]) * spacing[0]);
    return land;
}
