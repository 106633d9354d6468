#version 150

// Shared by all fragment shaders that compute light: makes room for highlights, then encodes for the screen.
vec3 toDisplay(vec3 light)
{
    const float exposure = 1.15;
    return pow(1.0 - exp(-light * exposure), vec3(1.0 / 2.2));
}
