// The floor, the plane z = 0, endless: each pixel's ray from the eye meets it or not. Far away it
// fades into the background, like a studio backdrop. It is lit by the same lights as the shapes
// and darkened where a shadow-casting light is blocked, softened over the light's blur radius.
uniform mat4 inverseViewProjection;
uniform mat4 viewProjection;
uniform vec3 eye;
uniform vec3 floorColour;      // linear
uniform vec3 backgroundColour; // linear
uniform vec2 fadeCentre;
uniform vec2 fadeRange; // distance from fadeCentre where the fade starts and where it is complete

in vec2 deviceXY;
out vec4 colour;

void main()
{
    vec4 farPoint = inverseViewProjection * vec4(deviceXY, 1.0, 1.0);
    vec3 ray = farPoint.xyz / farPoint.w - eye;
    if (eye.z <= 0.0 || ray.z >= 0.0)
        discard; // the floor is seen from above only; this pixel looks over the horizon
    vec3 p = eye + ray * (-eye.z / ray.z);
    p.z = 0.0;

    float light = ambient;
    for (int i = 0; i < lightCount; ++i)
        light += lightReaching(i, p, vec3(0.0, 0.0, 1.0));
    float fade = smoothstep(fadeRange.x, fadeRange.y, distance(p.xy, fadeCentre));
    colour = vec4(toScreen(mix(floorColour * light, backgroundColour, fade)), 1.0);

    vec4 clip = viewProjection * vec4(p, 1.0);
    gl_FragDepth = clamp(clip.z / clip.w * 0.5 + 0.5, 0.0, 1.0);
}
