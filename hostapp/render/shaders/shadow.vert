layout(location = 0) in vec3 position;
layout(location = 2) in mat4 world; // per instance, as in mesh.vert
uniform mat4 lightView;
uniform mat4 lightProjection;

out float viewDepth;

void main()
{
    vec4 v = lightView * (world * vec4(position, 1.0));
    viewDepth = v.z;
    gl_Position = lightProjection * v;
}
