// The floor, the plane z = 0, endless: each pixel's ray from the eye meets it or not. Far away it
// fades into the background, like a studio backdrop. It is lit by the same lights as the shapes
// and darkened where a shadow-casting light is blocked, softened over the light's blur radius.
const int MaxShadows = 4;
const int MaxShadowSamples = 64;

uniform mat4 inverseViewProjection;
uniform mat4 viewProjection;
uniform vec3 eye;
uniform vec3 floorColour;      // linear
uniform vec3 backgroundColour; // linear
uniform vec2 fadeCentre;
uniform vec2 fadeRange; // distance from fadeCentre where the fade starts and where it is complete

uniform sampler2D shadowAtlas; // per tile: view depth of the nearest caster / the frame's depthScale
uniform mat4 shadowView[MaxShadows];
uniform mat4 shadowProjection[MaxShadows];
uniform vec4 shadowTile[MaxShadows]; // the tile's place in the atlas: offset xy, size zw
uniform float shadowDepthScale[MaxShadows];
uniform float shadowBlur[MaxShadows];
uniform int shadowSampleCount; // 1 to MaxShadowSamples: fewer while the view's camera moves
// The first shadowSampleCount entries, spread evenly over the unit disk.
uniform vec2 shadowDisk[MaxShadowSamples];

in vec2 deviceXY;
out vec4 colour;

// Keeps casters that touch the floor from shadowing the floor at their own foot. Scene units.
const float ShadowBias = 0.02;

// The share of floor points within the blur radius of p whose line to the light is free. Each
// point is looked up in the light's shadow map (percentage-closer filtering, in floor space so
// that the radius is the light's blur in scene units whatever the map's resolution); the disk is
// turned from pixel to pixel so that the few dozen samples blend into fine grain, not steps.
float unblocked(int s, vec3 p)
{
    vec4 centre = shadowView[s] * vec4(p, 1.0);
    vec4 alongX = shadowView[s][0] * shadowBlur[s];
    vec4 alongY = shadowView[s][1] * shadowBlur[s];
    float turn = 6.2831853
                 * fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    mat2 rotation = mat2(cos(turn), sin(turn), -sin(turn), cos(turn));
    float free = 0.0;
    for (int k = 0; k < MaxShadowSamples; ++k) {
        if (k >= shadowSampleCount)
            break;
        vec2 offset = rotation * shadowDisk[k];
        vec4 q = centre + offset.x * alongX + offset.y * alongY;
        vec4 clip = shadowProjection[s] * q;
        if (clip.w <= 0.0) {
            free += 1.0;
            continue;
        }
        vec2 uv = clip.xy / clip.w * 0.5 + 0.5;
        if (any(lessThan(uv, vec2(0.0))) || any(greaterThan(uv, vec2(1.0)))) {
            free += 1.0; // outside the frame that holds every caster
            continue;
        }
        float nearest = texture(shadowAtlas, shadowTile[s].xy + uv * shadowTile[s].zw).r;
        if (nearest >= 1.0 || (q.z - ShadowBias) / shadowDepthScale[s] <= nearest)
            free += 1.0;
    }
    return free / float(shadowSampleCount);
}

void main()
{
    vec4 farPoint = inverseViewProjection * vec4(deviceXY, 1.0, 1.0);
    vec3 ray = farPoint.xyz / farPoint.w - eye;
    if (eye.z <= 0.0 || ray.z >= 0.0)
        discard; // the floor is seen from above only; this pixel looks over the horizon
    vec3 p = eye + ray * (-eye.z / ray.z);
    p.z = 0.0;

    float light = ambient;
    for (int i = 0; i < lightCount; ++i) {
        float facing = towardsLight(i, p).z; // the floor's normal is +z
        if (facing <= 0.0)
            continue;
        int s = lightShadow[i];
        light += lightIntensity[i] * facing * (s >= 0 ? unblocked(s, p) : 1.0);
    }
    float fade = smoothstep(fadeRange.x, fadeRange.y, distance(p.xy, fadeCentre));
    colour = vec4(toScreen(mix(floorColour * light, backgroundColour, fade)), 1.0);

    vec4 clip = viewProjection * vec4(p, 1.0);
    gl_FragDepth = clamp(clip.z / clip.w * 0.5 + 0.5, 0.0, 1.0);
}
