#version 150

uniform vec4 flatColor;

out vec4 color;

void main()
{
    color = flatColor;
}
