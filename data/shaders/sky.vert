#version 150

// Covers the screen with one triangle, whose corners are given in clip coordinates.

in vec3 position;

uniform vec3 forward;
uniform vec3 right; // as long as the right edge of the picture is away from its centre at distance 1
uniform vec3 up;

out vec3 direction;

void main()
{
    direction = forward + right * position.x + up * position.y;
    gl_Position = vec4(position, 1.0);
}
