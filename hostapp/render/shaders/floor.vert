// One triangle that covers the whole picture; the fragment shader finds the floor under each
// pixel.
out vec2 deviceXY;

void main()
{
    const vec2 corners[3] = vec2[3](vec2(-1.0, -1.0), vec2(3.0, -1.0), vec2(-1.0, 3.0));
    deviceXY = corners[gl_VertexID];
    gl_Position = vec4(deviceXY, 0.0, 1.0);
}
