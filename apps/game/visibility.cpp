#include "visibility.h"

#include "level.h"

#include <algorithm>

namespace {

std::size_t countFaces(const Scene& scene)
{
    std::size_t count = 0;
    if (!scene.level) return 0;
    for (const Level::Leaf& leaf : scene.level->getLeaves()) count += leaf.faces.size();
    return count;
}

void seeLevel(std::vector<bool>& faces, const Level& level, const ViewVolume& view)
{
    std::size_t number = 0;
    for (const Level::Leaf& leaf : level.getLeaves()) {
        const ViewVolume::Part part = view.seePart(leaf.bounds);
        for (const Level::Face& face : leaf.faces) {
            const bool isSeen =
                part == ViewVolume::Part::All || (part == ViewVolume::Part::Some && view.sees(face.polygon));
            faces[number++] = isSeen;
        }
    }
}

} // namespace

Visibility seeEverything(const Scene& scene)
{
    Visibility visibility;
    visibility.things.assign(scene.things.size(), true);
    visibility.faces.assign(countFaces(scene), true);
    visibility.drawn = visibility.countAll();
    return visibility;
}

Visibility seeWithin(const Scene& scene, const ViewVolume& view)
{
    Visibility visibility;
    for (const Thing& thing : scene.things)
        visibility.things.push_back(view.seePart(thing.bounds) != ViewVolume::Part::Nothing);
    visibility.faces.assign(countFaces(scene), false);
    if (scene.level) seeLevel(visibility.faces, *scene.level, view);
    visibility.drawn = static_cast<std::size_t>(std::count(visibility.things.begin(), visibility.things.end(), true) +
                                                std::count(visibility.faces.begin(), visibility.faces.end(), true));
    visibility.culled = visibility.countAll() - visibility.drawn;
    return visibility;
}

void hide(Visibility& visibility, const Scene& scene, const OcclusionMap& occlusion)
{
    const auto take = [&](std::vector<bool>& seen, std::size_t number) {
        if (!seen[number]) return;
        seen[number] = false;
        --visibility.drawn;
        ++visibility.hidden;
    };
    for (std::size_t i = 0; i < scene.things.size(); ++i)
        if (visibility.things[i] && occlusion.isHidden(scene.things[i].bounds)) take(visibility.things, i);
    if (!scene.level) return;
    std::size_t number = 0;
    for (const Level::Leaf& leaf : scene.level->getLeaves()) {
        const std::size_t end = number + leaf.faces.size();
        const auto first = visibility.faces.begin() + static_cast<std::ptrdiff_t>(number);
        const bool isSeen = std::find(first, first + static_cast<std::ptrdiff_t>(leaf.faces.size()), true) !=
                            first + static_cast<std::ptrdiff_t>(leaf.faces.size());
        const bool isHidden = isSeen && occlusion.isHidden(leaf.bounds);
        for (; number < end; ++number)
            if (isHidden) take(visibility.faces, number);
    }
}
