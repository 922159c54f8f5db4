// The lights shared by the shapes and the floor: up to MaxLights lights, summed, plus the
// document's ambient level, and the shadow maps both receive shadows from. Colours are in linear
// light; toScreen encodes them for the picture.
const int MaxLights = 8;
uniform int lightCount;
uniform vec4 lights[MaxLights]; // xyz: a point light's position (w = 1), or the unit direction
                                // towards a directional light (w = 0)
uniform float lightIntensity[MaxLights];
uniform int lightShadow[MaxLights]; // the light's shadow tile, or -1
uniform float ambient;

const int MaxShadows = 4;
const int MaxShadowSamples = 64;
uniform sampler2D shadowAtlas; // per tile: view depth of the nearest caster / the frame's depthScale
uniform mat4 shadowView[MaxShadows];
uniform mat4 shadowProjection[MaxShadows];
uniform vec4 shadowTile[MaxShadows]; // the tile's place in the atlas: offset xy, size zw
uniform float shadowTileTexels;      // a tile's side in texels
uniform float shadowDepthScale[MaxShadows];
uniform float shadowBlur[MaxShadows];
uniform int shadowSampleCount; // 1 to MaxShadowSamples: fewer while the view's camera moves
// The first shadowSampleCount entries, spread evenly over the unit disk.
uniform vec2 shadowDisk[MaxShadowSamples];

vec3 towardsLight(int i, vec3 p)
{
    return normalize(lights[i].xyz - p * lights[i].w);
}

vec3 toScreen(vec3 linear)
{
    return pow(clamp(linear, 0.0, 1.0), vec3(1.0 / 2.2));
}

// The share of the surface within the blur radius of p (scene units, in the plane through p
// across the normal n) whose line to the light of shadow tile s is free; facing is dot(n, l).
// Each point is looked up in the light's shadow map (percentage-closer filtering in the surface's
// own plane, so that the radius is the light's blur in scene units whatever the map's resolution
// and whatever way the surface turns); the disk is turned from pixel to pixel so that the few
// dozen samples blend into fine grain, not steps.
//
// A surface is in its own shadow map, one texel step at a time: p is moved off the surface along
// its normal by a texel and a half, and the depths compared with a margin that grows with the
// slope to the light, so that faces the light grazes do not shadow themselves in stripes while
// a shape standing on another still darkens it right up to where they touch.
float unblocked(int s, vec3 p, vec3 n, float facing)
{
    vec4 centreClip = shadowProjection[s] * (shadowView[s] * vec4(p, 1.0));
    // One texel's width in scene units at p: the frame's scale at that depth (w is the view
    // depth in a perspective frame and 1 in an orthographic one).
    float texel = 2.0 * max(centreClip.w, 1e-6) / (abs(shadowProjection[s][0][0]) * shadowTileTexels);
    float slope = sqrt(max(1.0 - facing * facing, 0.0)) / max(facing, 0.05);
    float depthBias = texel * (1.0 + 1.5 * min(slope, 20.0));
    vec3 a = abs(n.z) < 0.9 ? vec3(0.0, 0.0, 1.0) : vec3(0.0, 1.0, 0.0);
    vec3 t1 = normalize(cross(a, n));
    vec3 t2 = cross(n, t1);
    vec4 centre = shadowView[s] * vec4(p + n * (1.5 * texel), 1.0);
    vec4 alongX = shadowView[s] * vec4(t1 * shadowBlur[s], 0.0);
    vec4 alongY = shadowView[s] * vec4(t2 * shadowBlur[s], 0.0);
    float turn = 6.2831853
                 * fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    mat2 rotation = mat2(cos(turn), sin(turn), -sin(turn), cos(turn));
    // Every fourth sample first, spread over the whole disk: where all of them agree (most of a
    // picture is fully lit or fully shadowed) the rest would too, and are skipped; only the
    // penumbra pays for every sample. Below 32 samples each one counts.
    float free = 0.0;
    for (int phase = 0; phase < 4; ++phase) {
        for (int k = phase; k < shadowSampleCount; k += 4) {
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
            if (nearest >= 1.0 || (q.z - depthBias) / shadowDepthScale[s] <= nearest)
                free += 1.0;
        }
        if (phase == 0 && shadowSampleCount >= 32) {
            float probes = float((shadowSampleCount + 3) / 4);
            if (free == 0.0 || free == probes)
                return free / probes;
        }
    }
    return free / float(shadowSampleCount);
}

// The light of light i reaching p on a surface of normal n, shadows included, before the
// surface's own colour: intensity times the cosine of incidence times the unblocked share.
float lightReaching(int i, vec3 p, vec3 n)
{
    float facing = dot(n, towardsLight(i, p));
    if (facing <= 0.0)
        return 0.0;
    int s = lightShadow[i];
    return lightIntensity[i] * facing * (s >= 0 ? unblocked(s, p, n, facing) : 1.0);
}
