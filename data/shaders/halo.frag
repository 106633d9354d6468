#version 150

in vec2 place;

uniform vec3 glowColor;

out vec4 color;

void main()
{
    float fade = max(1.0 - length(place), 0.0);
    color = vec4(glowColor * (fade * fade), 1.0);
}
