#version 150

// What the editor shows of a map. The matrix arrives transposed: the vector stands on the left.

in vec3 position;
in vec2 textureCoordinate;
in vec3 normal;

uniform mat4 viewProjection;

out vec2 surfaceCoordinate;
out vec3 surfaceNormal;

void main()
{
    surfaceCoordinate = textureCoordinate;
    surfaceNormal = normal;
    gl_Position = vec4(position, 1.0) * viewProjection;
}
