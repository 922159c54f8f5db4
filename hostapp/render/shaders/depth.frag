// Nothing but depth is written (the colour writes are off during this pass).
out vec4 colour;

void main()
{
    colour = vec4(0.0);
}
