#!/usr/bin/env python3
# Copyright (C) 2026 The vantrel-tools authors
# SPDX-License-Identifier: MIT
"""Writes jar.obj: a screw-top jam jar, 7 cm across and 10.7 cm tall, in centimetres, z up,
standing on z = 0 and centred on the z axis.

The jar is turned from a profile in the (radius, height) plane. The profile is split into
sections that meet at sharp edges (the base, the step under the lid, the lid's top); within a
section the normals are smooth. Texture coordinates: u runs once round the jar, v up the
profile (OBJ's convention, v up).

    python3 examples/models/makejar.py > examples/models/jar.obj
"""
import math

SEGMENTS = 24  # sides round the jar; a multiple of 4 puts vertices on the x and y axes


def arc(cx, cz, radius, start, end, steps):
    """Points of a circular arc in the profile plane, angles in degrees, both ends included."""
    return [(cx + radius * math.cos(math.radians(a)), cz + radius * math.sin(math.radians(a)))
            for a in (start + (end - start) * k / steps for k in range(steps + 1))]


def shoulder(r0, z0, r1, z1, steps):
    """The body narrowing to the neck along half a cosine wave, ends included."""
    return [(r0 + (r1 - r0) * (1 - math.cos(math.pi * k / steps)) / 2, z0 + (z1 - z0) * k / steps)
            for k in range(steps + 1)]


# Smooth walls, each listed from bottom to top.
BODY = (arc(3.1, 0.4, 0.4, -90, 0, 2)             # rounded bottom edge
        + shoulder(3.5, 7.6, 3.0, 8.6, 3)         # straight wall up to 7.6, then the shoulder
        + [(3.0, 9.0)])                           # the neck, under the lid
LID = [(3.35, 9.0)] + arc(3.05, 10.4, 0.3, 0, 90, 2)  # the lid's side and rounded top edge


class Obj:
    def __init__(self):
        self.v, self.vt, self.vn, self.faces = [], [], [], []

    def vertex(self, position, uv, normal):
        self.v.append(position)
        self.vt.append(uv)
        self.vn.append(normal)
        return len(self.v)  # OBJ indices start at 1

    def write(self):
        print("# A screw-top jam jar: 7 cm across, 10.7 cm tall; centimetres, z up.")
        print("# Written by examples/models/makejar.py.")
        print("o Jar")
        for x, y, z in self.v:
            print(f"v {x:.6f} {y:.6f} {z:.6f}")
        for u, v in self.vt:
            print(f"vt {u:.6f} {v:.6f}")
        for x, y, z in self.vn:
            print(f"vn {x:.6f} {y:.6f} {z:.6f}")
        for face in self.faces:
            print("f " + " ".join(f"{i}/{i}/{i}" for i in face))


def ring_angle(k):
    return 2 * math.pi * k / SEGMENTS


def wall(obj, profile, v0, v1):
    """A smooth surface of revolution; v runs from v0 at the first profile point to v1."""
    lengths = [0.0]
    for (ra, za), (rb, zb) in zip(profile, profile[1:]):
        lengths.append(lengths[-1] + math.hypot(rb - ra, zb - za))
    # Outward normal of each profile edge going up: the tangent (dr, dz) turned to (dz, -dr).
    edges = []
    for (ra, za), (rb, zb) in zip(profile, profile[1:]):
        length = math.hypot(rb - ra, zb - za)
        edges.append(((zb - za) / length, -(rb - ra) / length))
    rings = []
    for i, (r, z) in enumerate(profile):
        touching = edges[max(i - 1, 0):i + 1]
        nr, nz = sum(e[0] for e in touching), sum(e[1] for e in touching)
        length = math.hypot(nr, nz)
        nr, nz = nr / length, nz / length
        v = v0 + (v1 - v0) * lengths[i] / lengths[-1]
        ring = []
        for k in range(SEGMENTS + 1):  # the seam's first and last vertex differ only in u
            a = ring_angle(k % SEGMENTS)
            c, s = math.cos(a), math.sin(a)
            ring.append(obj.vertex((r * c, r * s, z), (k / SEGMENTS, v), (nr * c, nr * s, nz)))
        rings.append(ring)
    for lower, upper in zip(rings, rings[1:]):
        for k in range(SEGMENTS):
            obj.faces.append((lower[k], lower[k + 1], upper[k + 1]))
            obj.faces.append((lower[k], upper[k + 1], upper[k]))


def flat_ring(obj, r_inner, r_outer, z, up):
    """A flat disc (r_inner = 0, a fan round its centre) or annulus facing up or down."""
    normal = (0.0, 0.0, 1.0 if up else -1.0)
    span = 2 * r_outer

    def at(r, k):
        a = ring_angle(k)
        x, y = r * math.cos(a), r * math.sin(a)
        return obj.vertex((x, y, z), (x / span + 0.5, y / span + 0.5), normal)

    outer = [at(r_outer, k) for k in range(SEGMENTS)]
    # Seen from above the ring runs counter-clockwise; a face looking down is wound the other way.
    def face(*corners):
        obj.faces.append(corners if up else tuple(reversed(corners)))

    if r_inner == 0:
        centre = obj.vertex((0.0, 0.0, z), (0.5, 0.5), normal)
        for k in range(SEGMENTS):
            face(centre, outer[k], outer[(k + 1) % SEGMENTS])
        return
    inner = [at(r_inner, k) for k in range(SEGMENTS)]
    for k in range(SEGMENTS):
        n = (k + 1) % SEGMENTS
        face(inner[k], outer[k], outer[n])
        face(inner[k], outer[n], inner[n])


def main():
    jar = Obj()
    flat_ring(jar, 0.0, BODY[0][0], BODY[0][1], up=False)    # the base
    wall(jar, BODY, 0.0, 0.8)
    flat_ring(jar, BODY[-1][0], LID[0][0], LID[0][1], up=False)  # the lid's rim, seen from below
    wall(jar, LID, 0.8, 1.0)
    flat_ring(jar, 0.0, LID[-1][0], LID[-1][1], up=True)      # the lid's top
    jar.write()


main()
