#version 150

// Covers the viewport with a picture by one triangle, whose corners are given in clip coordinates.

in vec3 position;

out vec2 place;

void main()
{
    place = position.xy * 0.5 + 0.5;
    gl_Position = vec4(position, 1.0);
}
