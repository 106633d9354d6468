#pragma once

#include <string>

// A program that places what it draws and gives it one colour, lit from one side where it has normals: "offset",
// "viewProjection", "shade" and "isLit".

inline const std::string shadedVertexText = R"(#version 150
in vec3 position;
in vec3 normal;
uniform vec3 offset;
uniform mat4 viewProjection;
out float brightness;
void main()
{
    brightness = 0.4 + 0.6 * max(dot(normal, vec3(0.48, -0.6, 0.64)), 0.0);
    gl_Position = vec4(position + offset, 1.0) * viewProjection;
}
)";
inline const std::string shadedFragmentText = R"(#version 150
in float brightness;
uniform vec4 shade;
uniform bool isLit;
out vec4 color;
void main() { color = vec4(isLit ? shade.rgb * brightness : shade.rgb, shade.a); }
)";
