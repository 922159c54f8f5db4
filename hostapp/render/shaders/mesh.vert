layout(location = 0) in vec3 position;
layout(location = 1) in vec3 normal;

uniform mat4 world;
uniform mat3 normalMatrix; // inverse transpose of world's linear part: stays a normal under scale
uniform mat4 viewProjection;

out vec3 worldPosition;
out vec3 worldNormal;

void main()
{
    vec4 p = world * vec4(position, 1.0);
    worldPosition = p.xyz;
    worldNormal = normalMatrix * normal;
    gl_Position = viewProjection * p;
}
