#version 150

in vec2 place;

uniform sampler2D surface;

out vec4 color;

void main()
{
    color = vec4(texture(surface, place).rgb, 1.0);
}
