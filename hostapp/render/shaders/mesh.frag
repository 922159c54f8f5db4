// Diffuse light after Lambert and a faint Blinn-Phong highlight, as of printed board with a
// satin finish, in the shadows of every shape (its own included) as the floor is. The base colour
// is the shape's artwork where it has one, and the shape's own colour where it has none or where
// the image is transparent.
uniform vec3 eye;
uniform float hasArtwork;  // 1 when the shapes of this draw print an artwork
uniform sampler2D artwork; // sRGB: sampled in linear light, v = 0 at the image's top
uniform float highlightSelection; // 1 in a view that marks the selection, 0 in pictures

flat in vec3 albedo;    // linear
flat in float selected; // 1 for a shape in the selection

in vec3 worldPosition;
in vec3 worldNormal;
in vec2 artworkCoord;
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
        float reaching = lightReaching(i, worldPosition, n);
        if (reaching <= 0.0)
            continue;
        // The highlight follows the light that gets through: none in a shadow.
        vec3 l = towardsLight(i, worldPosition);
        diffuse += reaching;
        highlight += reaching / max(dot(n, l), 1e-4)
                     * pow(max(dot(n, normalize(l + v)), 0.0), Shininess);
    }
    vec3 base = albedo;
    if (hasArtwork > 0.0) {
        vec4 print = texture(artwork, artworkCoord);
        base = mix(albedo, print.rgb, print.a);
    }
    colour = vec4(toScreen(base * (ambient + diffuse) + Gloss * highlight), 1.0);
    if (selected * highlightSelection > 0.0) {
        float rim = pow(1.0 - abs(dot(n, v)), 2.0);
        colour.rgb = mix(colour.rgb, HighlightColour, 0.3 + 0.6 * rim);
    }
}
