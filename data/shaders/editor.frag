#version 150

// Enough light to tell the sides of a box apart, and none that would hide anything.

in vec2 surfaceCoordinate;
in vec3 surfaceNormal;

uniform sampler2D surface;

out vec4 color;

void main()
{
    const vec3 light = vec3(0.36, -0.48, 0.8);
    float brightness = 0.72 + 0.28 * dot(normalize(surfaceNormal), light);
    color = vec4(texture(surface, surfaceCoordinate).rgb * brightness, 1.0);
}
