#!/usr/bin/env python3
"""Writes bracket.inp: an L-shaped bracket with a fillet that is shaken by two pushes, for CalculiX.

The leg stands along y with its top held (free to contract sideways), the arm reaches along x; the corner is at the origin. Lengths in mm,
forces in N, time in s, so mass is in t. Run it only to change the mesh: the deck that it writes is part of the
sample.
"""
import math

ARM, LEG, WALL, DEPTH, FILLET = 90.0, 70.0, 10.0, 20.0, 3.0
TAPER = 1.6  # thickness of the leg at its top, over WALL
ARC, ACROSS, ALONG, THROUGH = 8, 2, 7, 2  # elements; ARC is even
INCREMENT, DURATION = 2.5e-4, 2.0e-2


def lerp(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def quads():
    """Quadrilaterals of the profile, counter-clockwise, as lists of four corners."""
    reach = WALL + FILLET
    rays = []
    for i in range(ARC + 1):
        angle = math.pi + math.pi / 2 * i / ARC
        start = (reach + FILLET * math.cos(angle), reach + FILLET * math.sin(angle))
        half = ARC // 2
        end = (0.0, reach * (half - i) / half) if i <= half else (reach * (i - half) / half, 0.0)
        rays.append([lerp(start, end, j / ACROSS) for j in range(ACROSS + 1)])
    for i in range(ARC):
        for j in range(ACROSS):
            yield [rays[i][j], rays[i][j + 1], rays[i + 1][j + 1], rays[i + 1][j]]
    walls = [WALL * j / ACROSS for j in range(ACROSS + 1)]
    along = [reach + (ARM - reach) * i / ALONG for i in range(ALONG + 1)]
    up = [reach + (LEG - reach) * i / ALONG for i in range(ALONG + 1)]
    def tapered(x, y):
        return (x * (1 + (TAPER - 1) * max(0.0, y - reach) / (LEG - reach)), y)

    for x, y in ((along, walls), (walls, up)):
        for i in range(len(x) - 1):
            for j in range(len(y) - 1):
                yield [tapered(x[i], y[j]), tapered(x[i + 1], y[j]), tapered(x[i + 1], y[j + 1]),
                       tapered(x[i], y[j + 1])]


class Mesh:
    def __init__(self):
        self.ids, self.nodes, self.elements = {}, [], []

    def node(self, point):
        key = tuple(round(c, 6) + 0.0 for c in point)
        if key not in self.ids:
            self.nodes.append(key)
            self.ids[key] = len(self.nodes)
        return self.ids[key]

    def hexahedron(self, quad, z0, z1):
        corners = [(*p, z0) for p in quad] + [(*p, z1) for p in quad]
        edges = [(0, 1), (1, 2), (2, 3), (3, 0), (4, 5), (5, 6), (6, 7), (7, 4), (0, 4), (1, 5), (2, 6), (3, 7)]
        points = corners + [lerp(corners[a], corners[b], 0.5) for a, b in edges]
        self.elements.append([self.node(self.on_fillet(p)) for p in points])

    @staticmethod
    def on_fillet(point):
        """Mid-side nodes between two nodes of the fillet go onto the circle."""
        x, y, z = point
        centre = WALL + FILLET
        dx, dy = x - centre, y - centre
        r = math.hypot(dx, dy)
        if dx < 0 and dy < 0 and FILLET * 0.98 < r < FILLET:
            return (centre + dx * FILLET / r, centre + dy * FILLET / r, z)
        return point


def main():
    mesh = Mesh()
    for quad in list(quads()):
        for k in range(THROUGH):
            mesh.hexahedron(quad, DEPTH * k / THROUGH, DEPTH * (k + 1) / THROUGH)
    clamped = [i for i, p in enumerate(mesh.nodes, 1) if p[1] > LEG - 1e-6]
    corners = {1: (0, 1, 2, 3), 2: (4, 5, 6, 7), 3: (0, 1, 5, 4), 4: (1, 2, 6, 5), 5: (2, 3, 7, 6), 6: (3, 0, 4, 7)}
    pushed = [(number, face) for number, element in enumerate(mesh.elements, 1) for face, ends in corners.items()
              if all(abs(mesh.nodes[element[c] - 1][1] - WALL) < 1e-6 and mesh.nodes[element[c] - 1][0] > 0.75 * ARM
                     for c in ends)]
    with open("bracket.inp", "w", encoding="ascii", newline="\n") as deck:
        def put(line):
            deck.write(line + "\n")

        put("** Bracket under two pushes; written by make_deck.py")
        put("*HEADING\nBracket shaken by two pushes\n*NODE, NSET=ALL")
        for i, (x, y, z) in enumerate(mesh.nodes, 1):
            put(f"{i}, {x:g}, {y:g}, {z:g}")
        put("*ELEMENT, TYPE=C3D20R, ELSET=BRACKET")
        for i, nodes in enumerate(mesh.elements, 1):
            put(f"{i}, " + ", ".join(map(str, nodes[:10])) + ",")
            put(", ".join(map(str, nodes[10:])))
        sets = {"TOP": clamped, "MIDX": [i for i in clamped if abs(mesh.nodes[i - 1][0] - TAPER * WALL / 2) < 1e-6],
                "MIDZ": [i for i in clamped if abs(mesh.nodes[i - 1][2] - DEPTH / 2) < 1e-6]}
        for name, nodes in sets.items():
            put(f"*NSET, NSET={name}")
            for i in range(0, len(nodes), 12):
                put(", ".join(map(str, nodes[i:i + 12])))
        put("*MATERIAL, NAME=STEEL\n*ELASTIC\n206000., 0.3\n*DENSITY\n7.85e-9\n*DAMPING, ALPHA=60., BETA=1.e-5")
        put("*SOLID SECTION, ELSET=BRACKET, MATERIAL=STEEL\n*BOUNDARY\nTOP, 2\nMIDX, 1\nMIDZ, 3")
        put("** A push down, and a shorter one up before the first has died away")
        put("*AMPLITUDE, NAME=PUSHES")
        put("0., 0., 0.001, 1., 0.002, 0., 0.008, 0.")
        put("0.0085, -0.8, 0.0095, -0.8, 0.01, 0., 1., 0.")
        put("*STEP, INC=1000\n*DYNAMIC, DIRECT, ALPHA=-0.05")
        put(f"{INCREMENT:g}, {DURATION:g}\n*DLOAD, AMPLITUDE=PUSHES")
        for element, face in pushed:
            put(f"{element}, P{face}, 2.")
        put("*NODE FILE\nU\n*EL FILE\nS, E\n*END STEP")


if __name__ == "__main__":
    main()
