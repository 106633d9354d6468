#include "readings.h"

#include <cmath>
#include <cstdio>

namespace {

constexpr float halfCourtyard = 18.0f; // with the trees around it

std::string describeLeaf(const std::optional<Level::Position>& leaf)
{
    if (!leaf) return "outside";
    return "leaf " + std::to_string(leaf->leaf) + (leaf->isSolid ? ", solid" : "");
}

template <class... Values>
std::string print(const char* format, Values... values)
{
    char line[160];
    std::snprintf(line, sizeof line, format, values...);
    return line;
}

} // namespace

std::vector<std::string> describe(const Readings& readings)
{
    const Vector3<float>& position = readings.position;
    std::vector<std::string> lines = {print("%.1f ms", static_cast<double>(readings.frameMilliseconds)),
                                      print("%.1f %.1f %.1f", static_cast<double>(position.x),
                                            static_cast<double>(position.y), static_cast<double>(position.z)),
                                      describeLeaf(readings.leaf), std::to_string(readings.draws) + " draw calls",
                                      std::to_string(readings.drawn) + " drawn, " + std::to_string(readings.culled) +
                                          " culled, " + std::to_string(readings.hidden) + " hidden"};
    if (readings.scriptBytesPerMinute)
        lines.push_back("script: " + std::to_string(*readings.scriptBytesPerMinute) + " bytes a minute");
    return lines;
}

const char* nameOfPlace(const Scene& scene, const Vector3<float>& point)
{
    if (scene.level && scene.level->locate(point)) return "Gatehouse";
    const bool isInCourtyard = std::fabs(point.x) < halfCourtyard && std::fabs(point.y) < halfCourtyard;
    return isInCourtyard ? "Courtyard" : "Meadow";
}
