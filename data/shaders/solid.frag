#version 150

// Sun and two spot lights with shadows, light from the sky and the ground, lamps, and haze in the distance.

const int lampCount = 7;

in vec3 worldPosition;
in vec3 worldNormal;
in vec3 shadowPosition;
in vec4 spotPlaces[2]; // in the clip coordinates of the spot lights
in vec2 surfaceCoordinate;

uniform sampler2D surface;
uniform sampler2D shadowMap;
uniform vec3 tint;
uniform float specular;
uniform float shininess;
uniform float glow;

uniform vec3 eye;
uniform vec3 sunDirection; // towards the sun
uniform vec3 sunColor;
uniform vec3 skyLight;
uniform vec3 groundLight;
uniform vec3 hazeColor;
uniform vec3 lampColor;
uniform vec3 lampPositions[lampCount];

uniform sampler2D spotMaps[2];
uniform vec3 spotColors[2]; // black: it is off
uniform vec3 spotPositions[2];
uniform vec3 spotDirections[2];
uniform float spotInnerCosine; // of the angle from the middle up to which they are bright
uniform float spotOuterCosine; // and from which on they are dark

out vec4 color;

vec3 toDisplay(vec3 light);

// How much of the sun arrives: nine looks at the shadow map, which hold the distance of the surface nearest to the sun.
float sunlight()
{
    if (any(lessThan(shadowPosition, vec3(0.0))) || any(greaterThan(shadowPosition, vec3(1.0)))) return 1.0;
    vec2 texel = 1.0 / vec2(textureSize(shadowMap, 0));
    const float slack = 0.0004;
    float lit = 0.0;
    for (int y = -1; y <= 1; ++y)
        for (int x = -1; x <= 1; ++x)
            lit += step(shadowPosition.z - slack, texture(shadowMap, shadowPosition.xy + texel * vec2(x, y)).r);
    return lit / 9.0;
}

// How much of the spot light arrives where its cone reaches: four looks at the distances in its map.
float spotUncovered(sampler2D map, vec4 spotPlace)
{
    vec3 place = spotPlace.xyz / spotPlace.w * 0.5 + 0.5;
    vec2 texel = 0.7 / vec2(textureSize(map, 0));
    float lit = 0.0;
    for (int y = -1; y <= 1; y += 2)
        for (int x = -1; x <= 1; x += 2) lit += step(place.z, texture(map, place.xy + texel * vec2(x, y)).r);
    return lit / 4.0;
}

// What arrives of a spot light from a direction (towards it) and a distance.
vec3 spotlight(sampler2D map, vec4 place, vec3 spotColor, vec3 spotDirection, vec3 toSpot, float distance)
{
    const float halfReach = 14.0;
    float cone = smoothstep(spotOuterCosine, spotInnerCosine, -dot(toSpot, spotDirection));
    if (cone <= 0.0) return vec3(0.0);
    return spotColor * (cone * spotUncovered(map, place) / (1.0 + distance * distance / (halfReach * halfReach)));
}

// Adds what a surface gets of a spot light, and how it shines.
void addSpot(sampler2D map, vec4 place, vec3 spotColor, vec3 spotPosition, vec3 spotDirection, vec3 normal, vec3 toEye,
             inout vec3 diffuse, inout vec3 shine)
{
    if (spotColor == vec3(0.0)) return;
    vec3 toSpot = spotPosition - worldPosition;
    float spotDistance = length(toSpot);
    toSpot /= spotDistance;
    float spotFacing = dot(normal, toSpot);
    if (spotFacing <= 0.0) return;
    vec3 arriving = spotlight(map, place, spotColor, spotDirection, toSpot, spotDistance);
    diffuse += arriving * spotFacing;
    shine += arriving * pow(max(dot(normal, normalize(toSpot + toEye)), 0.0), shininess);
}

void main()
{
    vec3 normal = normalize(worldNormal);
    vec3 toEye = eye - worldPosition;
    float distance = length(toEye);
    toEye /= distance;
    vec3 base = pow(texture(surface, surfaceCoordinate).rgb, vec3(2.2)) * tint;

    vec3 diffuse = mix(groundLight, skyLight, normal.z * 0.5 + 0.5);
    vec3 shine = vec3(0.0);

    float facing = max(dot(normal, sunDirection), 0.0);
    if (facing > 0.0) {
        float lit = sunlight();
        diffuse += sunColor * (facing * lit);
        shine += sunColor * (lit * pow(max(dot(normal, normalize(sunDirection + toEye)), 0.0), shininess));
    }

    for (int i = 0; i < lampCount; ++i) {
        vec3 toLamp = lampPositions[i] - worldPosition;
        float squared = dot(toLamp, toLamp);
        toLamp *= inversesqrt(squared);
        vec3 arriving = lampColor / (1.0 + squared);
        diffuse += arriving * max(dot(normal, toLamp), 0.0);
        shine += arriving * pow(max(dot(normal, normalize(toLamp + toEye)), 0.0), shininess);
    }

    // Older hardware cannot choose a map by a number that it calculates.
    addSpot(spotMaps[0], spotPlaces[0], spotColors[0], spotPositions[0], spotDirections[0], normal, toEye, diffuse, shine);
    addSpot(spotMaps[1], spotPlaces[1], spotColors[1], spotPositions[1], spotDirections[1], normal, toEye, diffuse, shine);

    // A smooth surface mirrors the sky at grazing angles.
    float grazing = pow(1.0 - max(dot(normal, toEye), 0.0), 5.0);
    vec3 light = base * (diffuse + glow) + specular * (shine + skyLight * grazing * 2.0);
    float haze = 1.0 - exp(-max(distance - 30.0, 0.0) * 0.007);
    color = vec4(toDisplay(mix(light, hazeColor, haze)), 1.0);
}
