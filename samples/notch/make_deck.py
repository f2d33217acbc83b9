#!/usr/bin/env python3
"""Writes notch.inp: a bar with a semicircular edge notch, two load cases (tension, bending), for CalculiX.

The bar lies along x, its height along y, its thickness along z; lengths in mm, stresses in N/mm2.
Run it only to change the mesh: the deck that it writes is part of the sample.
"""
import math

HALF_LENGTH, HEIGHT, THICKNESS, RADIUS = 60.0, 30.0, 8.0, 5.0
BLOCK = 18.0  # half width and depth of the block around the notch
ARC, RADIAL, ALONG, BELOW, ACROSS = 12, 8, 9, 4, 3  # elements; ARC is even


def graded(n, ratio):
    """n + 1 positions from 0 to 1, the last interval `ratio` times the first."""
    steps = [ratio ** (i / max(n - 1, 1)) for i in range(n)]
    total, out = sum(steps), [0.0]
    for step in steps:
        out.append(out[-1] + step / total)
    return out


def lerp(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def quads():
    """Quadrilaterals of the right half (x >= 0), counter-clockwise, as lists of four corners."""
    ring = graded(RADIAL, 5.0)
    rays = []
    for i in range(ARC + 1):
        angle = -math.pi / 2 * i / ARC
        start = (RADIUS * math.cos(angle), RADIUS * math.sin(angle))
        half = ARC // 2
        end = (BLOCK, -BLOCK * i / half) if i <= half else (BLOCK * (ARC - i) / half, -BLOCK)
        rays.append([lerp(start, end, t) for t in ring])
    for i in range(ARC):
        for j in range(RADIAL):
            yield [rays[i + 1][j], rays[i + 1][j + 1], rays[i][j + 1], rays[i][j]]
    xs = [BLOCK * (ARC // 2 - i) / (ARC // 2) for i in range(ARC // 2 + 1)][::-1]
    ys = [-BLOCK * i / (ARC // 2) for i in range(ARC // 2 + 1)]
    lower = [-BLOCK - (HEIGHT - BLOCK) * i / BELOW for i in range(BELOW + 1)]
    outer = [BLOCK + (HALF_LENGTH - BLOCK) * t for t in graded(ALONG, 2.0)]
    for x, y in ((xs, lower), (outer, ys + lower[1:])):
        for i in range(len(x) - 1):
            for j in range(len(y) - 1):
                yield [(x[i], y[j + 1]), (x[i + 1], y[j + 1]), (x[i + 1], y[j]), (x[i], y[j])]


class Mesh:
    def __init__(self):
        self.ids, self.nodes, self.elements = {}, [], []

    def node(self, point):
        key = tuple(round(c, 6) for c in point)
        if key not in self.ids:
            self.nodes.append(key)
            self.ids[key] = len(self.nodes)
        return self.ids[key]

    def hexahedron(self, quad, z0, z1):
        corners = [(*p, z0) for p in quad] + [(*p, z1) for p in quad]
        edges = [(0, 1), (1, 2), (2, 3), (3, 0), (4, 5), (5, 6), (6, 7), (7, 4), (0, 4), (1, 5), (2, 6), (3, 7)]
        points = corners + [lerp(corners[a], corners[b], 0.5) for a, b in edges]
        self.elements.append([self.node(self.turned(self.on_notch(p))) for p in points])

    @staticmethod
    def on_notch(point):
        """Mid-side nodes between two nodes of the notch go onto the circle."""
        x, y, z = point
        r = math.hypot(x, y)
        if RADIUS * 0.99 < r < RADIUS:
            return (x * RADIUS / r, y * RADIUS / r, z)
        return point

    @staticmethod
    def turned(point):
        """Half a turn about the bar's axis: the notch opens towards -y, where the pictures are taken from."""
        x, y, z = point
        return (x, 0.0 - y, THICKNESS - z)


def rows(numbers, width=12):
    for i in range(0, len(numbers), width):
        yield ", ".join(str(n) for n in numbers[i:i + width])


def main():
    mesh = Mesh()
    for quad in list(quads()):
        mirrored = [(-x, y) for x, y in (quad[1], quad[0], quad[3], quad[2])]
        for k in range(ACROSS):
            for side in (quad, mirrored):
                mesh.hexahedron(side, THICKNESS * k / ACROSS, THICKNESS * (k + 1) / ACROSS)

    def where(test):
        return [i + 1 for i, p in enumerate(mesh.nodes) if test(p)]

    def faces(test):
        """(element, face) whose four corners fulfil the test; faces numbered as CalculiX does for hexahedra."""
        corners = {1: (0, 1, 2, 3), 2: (4, 5, 6, 7), 3: (0, 1, 5, 4), 4: (1, 2, 6, 5), 5: (2, 3, 7, 6), 6: (3, 0, 4, 7)}
        for number, element in enumerate(mesh.elements, 1):
            for face, ends in corners.items():
                if all(test(mesh.nodes[element[c] - 1]) for c in ends):
                    yield number, face

    clamped = where(lambda p: p[0] < -HALF_LENGTH + 1e-6)
    pulled = list(faces(lambda p: p[0] > HALF_LENGTH - 1e-6))
    pressed = list(faces(lambda p: p[1] < 1e-6 and p[0] > HALF_LENGTH * 0.75))
    with open("notch.inp", "w", encoding="ascii", newline="\n") as deck:
        def put(line):
            deck.write(line + "\n")

        put("** Bar with a semicircular edge notch; written by make_deck.py")
        put("*HEADING\nBar with an edge notch\n*NODE, NSET=ALL")
        for i, (x, y, z) in enumerate(mesh.nodes, 1):
            put(f"{i}, {x:g}, {y:g}, {z:g}")
        put("*ELEMENT, TYPE=C3D20R, ELSET=BAR")
        for i, nodes in enumerate(mesh.elements, 1):
            put(f"{i}, " + ", ".join(map(str, nodes[:10])) + ",")
            put(", ".join(map(str, nodes[10:])))
        put("*NSET, NSET=CLAMP")
        for row in rows(clamped):
            put(row)
        put("*MATERIAL, NAME=STEEL\n*ELASTIC\n210000., 0.3\n*DENSITY\n7.85e-9")
        put("*SOLID SECTION, ELSET=BAR, MATERIAL=STEEL\n*BOUNDARY\nCLAMP, 1, 3")
        for title, loads, pressure in (("Tension", pulled, -53.0), ("Bending", pressed, 10.6)):
            put(f"** {title}\n*STEP\n*STATIC\n*DLOAD, OP=NEW")
            for element, face in loads:
                put(f"{element}, P{face}, {pressure:g}")
            put("*NODE FILE\nU\n*EL FILE\nS, E\n*END STEP")


if __name__ == "__main__":
    main()
