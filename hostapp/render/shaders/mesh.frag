// Diffuse light after Lambert and a faint Blinn-Phong highlight, as of printed board with a
// satin finish. Shapes are lit but not shadowed: only the floor receives shadows.
uniform vec3 eye;
uniform float highlightSelection; // 1 in a view that marks the selection, 0 in pictures

flat in vec3 albedo;    // linear
flat in float selected; // 1 for a shape in the selection

in vec3 worldPosition;
in vec3 worldNormal;
out vec4 colour;

const float Shininess = 40.0;
const float Gloss = 0.15;
// The selection's mark: a warm tint over the whole shape and a brighter rim where its faces turn
// away from the viewer, so that a selected shape stands out whatever its own colour.
const vec3 HighlightColour = vec3(1.0, 0.55, 0.1); // sRGB

void main()
{
    vec3 n = normalize(worldNormal);
    vec3 v = normalize(eye - worldPosition);
    // Faces are lit from the side the viewer sees: open covers and thin boards show both sides,
    // and the generators' winding does not have to be consistent for that.
    if (dot(n, v) < 0.0)
        n = -n;
    float diffuse = 0.0;
    float highlight = 0.0;
    for (int i = 0; i < lightCount; ++i) {
        vec3 l = towardsLight(i, worldPosition);
        float facing = dot(n, l);
        if (facing <= 0.0)
            continue;
        diffuse += lightIntensity[i] * facing;
        highlight += lightIntensity[i] * pow(max(dot(n, normalize(l + v)), 0.0), Shininess);
    }
    colour = vec4(toScreen(albedo * (ambient + diffuse) + Gloss * highlight), 1.0);
    if (selected * highlightSelection > 0.0) {
        float rim = pow(1.0 - abs(dot(n, v)), 2.0);
        colour.rgb = mix(colour.rgb, HighlightColour, 0.3 + 0.6 * rim);
    }
}
