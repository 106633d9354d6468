#version 150

// The finished picture as a film would show it: more contrast in the middle tones, and corners that are a little darker.

in vec2 place;

uniform sampler2D surface;
uniform float brightness;

out vec4 color;

void main()
{
    const float contrast = 0.35;
    vec3 seen = texture(surface, place).rgb;
    seen = mix(seen, seen * seen * (3.0 - 2.0 * seen), contrast);
    vec2 fromMiddle = place - 0.5;
    float vignette = 1.0 - 0.55 * dot(fromMiddle, fromMiddle);
    color = vec4(seen * (vignette * brightness), 1.0);
}
