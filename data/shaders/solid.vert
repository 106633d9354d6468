#version 150

// The lit solids of the demo. All matrices arrive transposed: the vector stands on the left.

in vec3 position;
in vec2 textureCoordinate;
in vec3 normal;

uniform mat4 world;
uniform mat3 normalMatrix;
uniform mat4 viewProjection;
uniform mat4 shadowProjection;
uniform mat4 spotProjections[2];
uniform vec3 textureRepeat; // along the solid's own x, y and z

const float shadowLift = 0.05;
const float spotLift = 0.004; // of the distance: as the light spreads, so do the pixels of its map

out vec3 worldPosition;
out vec3 worldNormal;
out vec3 shadowPosition;
out vec4 spotPlaces[2]; // in the clip coordinates of the lamps
out vec2 surfaceCoordinate;

// A face repeats the texture along its own two sides, so that bricks are equally large on all sides of a wall.
vec2 repeatsOfFace()
{
    vec3 facing = abs(normal);
    if (facing.z > facing.x && facing.z > facing.y) return textureRepeat.xy;
    return facing.x > facing.y ? textureRepeat.yz : textureRepeat.xz;
}

void main()
{
    vec4 placed = vec4(position, 1.0) * world;
    worldPosition = placed.xyz;
    worldNormal = normal * normalMatrix;
    // Looked up a little above the surface, or slanting light would make it shade itself.
    vec3 upwards = normalize(worldNormal);
    vec4 lifted = placed + vec4(upwards * shadowLift, 0.0);
    shadowPosition = (lifted * shadowProjection).xyz * 0.5 + 0.5;
    for (int i = 0; i < 2; ++i) {
        float spotDistance = (placed * spotProjections[i]).w;
        spotPlaces[i] = (placed + vec4(upwards * (spotLift * spotDistance), 0.0)) * spotProjections[i];
    }
    surfaceCoordinate = textureCoordinate * repeatsOfFace();
    gl_Position = placed * viewProjection;
}
