#include "labels.h"

#include "map_edits.h"
#include "picture_space.h"

#include <imgui.h>

namespace {

constexpr double farthestLabel = 40; // world units
constexpr ImU32 labelColor = IM_COL32(190, 255, 190, 255);
constexpr ImU32 shadowColor = IM_COL32(0, 0, 0, 200);

} // namespace

void showLabels(const MapDocument& document, const Viewpoint& camera, const ScreenArea& area)
{
    if (area.isEmpty()) return;
    ImDrawList& list = *ImGui::GetBackgroundDrawList();
    const auto x = static_cast<float>(area.x);
    const auto y = static_cast<float>(area.y);
    list.PushClipRect({x, y}, {x + static_cast<float>(area.width), y + static_cast<float>(area.height)});
    const Vector3<double> eye = {camera.position.x, camera.position.y, camera.position.z};
    for (const auto& entity : document.entities) {
        const Vector3<double> place = getPosition(document, *entity) + Vector3<double>(0, 0, entityHalfSize);
        if (length(place - eye) > farthestLabel) continue;
        const std::optional<Vector2<float>> pixel = findPixel(camera, area, place);
        if (!pixel) continue;
        const std::string name = getEntry(*entity, "class");
        const ImVec2 extent = ImGui::CalcTextSize(name.c_str());
        const ImVec2 at = {pixel->x - extent.x / 2, pixel->y - extent.y - 2};
        list.AddText({at.x + 1, at.y + 1}, shadowColor, name.c_str());
        list.AddText(at, labelColor, name.c_str());
    }
    list.PopClipRect();
}
