#version 150

// Solids without light: the edges of the wireframe, and the distances in the shadow map.

in vec3 position;

uniform mat4 world;
uniform mat4 viewProjection;

void main()
{
    gl_Position = vec4(position, 1.0) * world * viewProjection;
}
