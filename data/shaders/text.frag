#version 150

// White letters on nothing, in any colour.

in vec2 place;
in vec4 ink;

uniform sampler2D surface;

out vec4 color;

void main()
{
    color = vec4(ink.rgb, ink.a * texture(surface, place).a);
}
