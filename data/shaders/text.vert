#version 150

// Characters of a bitmap font, in pixels from the top left.

in vec3 position;
in vec2 textureCoordinate;
in vec4 color;

uniform vec2 screenSize; // pixels

out vec2 place;
out vec4 ink;

void main()
{
    place = textureCoordinate;
    ink = color;
    gl_Position = vec4(position.x / screenSize.x * 2.0 - 1.0, 1.0 - position.y / screenSize.y * 2.0, 0.0, 1.0);
}
