// The shapes' depth alone, before they are shaded: each pixel is then shaded once, for the shape
// in front, rather than once for every shape drawn over it. The position is computed exactly as
// in mesh.vert (and invariant in both), so the shading pass meets these depths exactly.
layout(location = 0) in vec3 position;
layout(location = 2) in mat4 world; // per instance, as in mesh.vert

uniform mat4 viewProjection;

invariant gl_Position;

void main()
{
    vec4 p = world * vec4(position, 1.0);
    gl_Position = viewProjection * p;
}
