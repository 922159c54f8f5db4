// One instance of a mesh: the shapes that share a mesh are drawn in one instanced call, each
// with its own attributes.
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;
layout(location = 2) in mat4 world;
layout(location = 6) in mat3 normalMatrix; // inverse transpose of world's linear part: stays a
                                           // normal under scale
layout(location = 9) in vec3 instanceAlbedo; // linear
layout(location = 10) in float instanceSelected;
layout(location = 11) in vec2 texCoord; // the artwork's u and v, 0..1, v = 0 at the image's top

uniform mat4 viewProjection;

out vec3 worldPosition;
out vec3 worldNormal;
flat out vec3 albedo;
flat out float selected;
invariant gl_Position; // the same depths as depth.vert's, for the shading pass's GL_LEQUAL
out vec2 artworkCoord;

void main()
{
    vec4 p = world * vec4(position, 1.0);
    worldPosition = p.xyz;
    worldNormal = normalMatrix * normal;
    albedo = instanceAlbedo;
    selected = instanceSelected;
    artworkCoord = texCoord;
    gl_Position = viewProjection * p;
}
