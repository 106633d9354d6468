#version 150

// A glow around a point, as a square that faces the viewer.

in vec3 position; // -1 to 1 from corner to corner

uniform mat4 viewProjection;
uniform vec3 centre;
uniform vec3 right; // as long as the glow reaches, like up
uniform vec3 up;

out vec2 place;

void main()
{
    place = position.xy;
    gl_Position = vec4(centre + right * position.x + up * position.y, 1.0) * viewProjection;
}
