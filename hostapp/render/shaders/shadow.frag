// The shadow map keeps the light's view depth of the nearest caster, scaled to 0..1 (1: none).
uniform float depthScale;

in float viewDepth;
out vec4 depth;

void main()
{
    depth = vec4(viewDepth / depthScale, 0.0, 0.0, 1.0);
}
