#version 150

in vec3 direction;

uniform vec3 zenithColor;
uniform vec3 hazeColor;
uniform vec3 sunColor;
uniform vec3 sunDirection;

out vec4 color;

vec3 toDisplay(vec3 light);

void main()
{
    vec3 view = normalize(direction);
    float height = max(view.z, 0.0);
    float towardsSun = max(dot(view, sunDirection), 0.0);
    vec3 light = mix(hazeColor, zenithColor, 1.0 - pow(1.0 - height, 5.0));
    light += sunColor * (0.10 * pow(towardsSun, 6.0) + 0.25 * pow(towardsSun, 60.0) + 6.0 * pow(towardsSun, 2500.0));
    color = vec4(toDisplay(light), 1.0);
}
