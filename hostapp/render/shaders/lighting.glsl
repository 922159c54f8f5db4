// The lights shared by the shapes and the floor: up to MaxLights lights, summed, plus the
// document's ambient level. Colours are in linear light; toScreen encodes them for the picture.
const int MaxLights = 8;
uniform int lightCount;
uniform vec4 lights[MaxLights]; // xyz: a point light's position (w = 1), or the unit direction
                                // towards a directional light (w = 0)
uniform float lightIntensity[MaxLights];
uniform int lightShadow[MaxLights]; // the light's shadow tile, or -1
uniform float ambient;

vec3 towardsLight(int i, vec3 p)
{
    return normalize(lights[i].xyz - p * lights[i].w);
}

vec3 toScreen(vec3 linear)
{
    return pow(clamp(linear, 0.0, 1.0), vec3(1.0 / 2.2));
}
