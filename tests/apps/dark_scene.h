#pragma once

#include "scene.h"

/// Puts out every light of a scene but that of the lamp above the courtyard.
inline void darken(Scene& scene)
{
    scene.lamps.fill({0, 0, -1e6f});
    scene.levelLamps.clear();
    for (Vector3<float>* light :
         {&scene.lampColor, &scene.sunColor, &scene.skyLight, &scene.groundLight, &scene.hazeColor, &scene.zenithColor})
        *light = {0, 0, 0};
    for (Thing& thing : scene.things) thing.material.glow = 0;
}

/// A floor of 40 by 40 with a board above it, half a unit wide, east of the middle. Nothing shines.
inline Scene makeFloorWithBoard()
{
    Scene scene;
    const Material stone = {TextureName::Limestone, 0.5f, {1, 1, 1}, 0};
    scene.things.push_back(place(SolidKind::Box, stone, {0, 0, -1}, {40, 40, 1}));
    scene.things.push_back(place(SolidKind::Box, stone, {1.5f, 0, 4.9f}, {0.5f, 0.5f, 0.1f}));
    scene.sunDirection = {0, 0, 1};
    darken(scene);
    return scene;
}
