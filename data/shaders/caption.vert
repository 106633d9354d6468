#version 150

// A line of text that is a texture of its own, as a rectangle in pixels from the bottom left.

in vec3 position;

uniform vec2 screenSize; // pixels, like the corner and the size of the text
uniform vec2 corner;
uniform vec2 size;
uniform vec4 textColor;

out vec2 place;
out vec4 ink;

void main()
{
    place = (position.xy - corner) / size;
    place.y = 1.0 - place.y; // pictures have their top row at 0
    ink = textColor;
    gl_Position = vec4(position.xy / screenSize * 2.0 - 1.0, 0.0, 1.0);
}
