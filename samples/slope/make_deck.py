#!/usr/bin/env python3
"""Writes slope.inp: an undrained clay slope in plane strain under its own weight, for CalculiX.

The slope rises from its toe at the origin to the right; below it the clay reaches down to a firm base. Lengths in m,
forces in kN, masses in t. Run it only to change the mesh: the deck that it writes is part of the sample.
"""
import argparse
import math

HEIGHT, ANGLE, BASE = 10.0, 60.0, 2.0  # of the slope; depth of the clay below the toe
FRONT, BACK = 15.0, 35.0  # where the model ends, from the toe
COHESION, DENSITY, GRAVITY = 50.0, 2.0, 9.81  # undrained shear strength, kN/m2; t/m3; m/s2
# The undrained clay hardly changes its volume.
ELASTIC_MODULUS, POISSON_RATIO = 30000.0, 0.49


def graded(start, end, smallest, ratio):
    """Positions from start to end; each interval is `ratio` times the former, the first about `smallest`."""
    length = abs(end - start)
    count = max(1, round(math.log(1 + length * (ratio - 1) / smallest) / math.log(ratio)))
    steps = [ratio ** i for i in range(count)]
    out, scale = [start], (end - start) / sum(steps)
    for step in steps:
        out.append(out[-1] + step * scale)
    out[-1] = end
    return out


def even(start, end, size):
    count = max(1, round(abs(end - start) / size))
    return [start + (end - start) * i / count for i in range(count + 1)]


def quads(size):
    """Quadrilaterals of about `size` near the slope as lists of four corners, counter-clockwise."""
    slipping = 2.0 * HEIGHT  # behind this no slip circle reaches
    columns = even(0.0, slipping, size)[:-1] + graded(slipping, BACK, size, 1.3)
    front = graded(0.0, -FRONT, size, 1.3)[::-1]
    upper, lower = even(0.0, HEIGHT, size), even(-BASE, 0.0, size)
    run = 1.0 / math.tan(math.radians(ANGLE))

    def leaning(x, y):
        """Columns lean like the face at the face and stand upright at the back."""
        return x + max(y, 0.0) * run * (BACK - x) / BACK, y

    for xs, ys in ((front, lower), (columns, lower), (columns, upper)):
        for x0, x1 in zip(xs, xs[1:]):
            for y0, y1 in zip(ys, ys[1:]):
                yield [leaning(x0, y0), leaning(x1, y0), leaning(x1, y1), leaning(x0, y1)]


class Mesh:
    def __init__(self):
        self.ids, self.nodes, self.elements = {}, [], []

    def node(self, point):
        key = tuple(round(c, 6) + 0.0 for c in point)
        if key not in self.ids:
            self.nodes.append(key)
            self.ids[key] = len(self.nodes)
        return self.ids[key]

    def quadrilateral(self, corners):
        middles = [[(p + q) / 2 for p, q in zip(corners[i], corners[(i + 1) % 4])] for i in range(4)]
        self.elements.append([self.node(p) for p in corners + middles])


def rows(numbers, width=12):
    for i in range(0, len(numbers), width):
        yield ", ".join(str(n) for n in numbers[i:i + width])


def lines(size):
    """The lines of the deck."""
    mesh = Mesh()
    for quad in quads(size):
        mesh.quadrilateral(quad)

    def where(test):
        return [i for i, p in enumerate(mesh.nodes, 1) if test(*p)]

    yield "** Undrained slope on a firm base; written by make_deck.py"
    yield "*HEADING\nUndrained slope\n*NODE, NSET=ALL"
    for i, (x, y) in enumerate(mesh.nodes, 1):
        yield f"{i}, {x:g}, {y:g}, 0"
    yield "*ELEMENT, TYPE=CPE8R, ELSET=GROUND"
    for i, nodes in enumerate(mesh.elements, 1):
        yield f"{i}, " + ", ".join(map(str, nodes))
    for name, nodes in (("BASE", where(lambda x, y: y < 1e-6 - BASE)),
                        ("SIDES", where(lambda x, y: x < 1e-6 - FRONT or x > BACK - 1e-6))):
        yield f"*NSET, NSET={name}"
        yield from rows(nodes)
    # In plane strain von Mises yields at a shear stress of yield / sqrt(3): that is the undrained strength.
    yield "*MATERIAL, NAME=CLAY"
    yield f"*ELASTIC\n{ELASTIC_MODULUS:g}, {POISSON_RATIO:g}\n*DENSITY\n{DENSITY:g}"
    yield f"*PLASTIC\n{COHESION * math.sqrt(3):.6f}, 0."
    yield "*SOLID SECTION, ELSET=GROUND, MATERIAL=CLAY"
    yield "*BOUNDARY\nBASE, 1, 2\nSIDES, 1, 1"
    yield "** Gravity\n*STEP, INC=200\n*STATIC\n0.25, 1., 0.004, 0.25"
    yield f"*DLOAD\nGROUND, GRAV, {GRAVITY:g}, 0., -1., 0."
    yield "*NODE FILE\nU\n*EL FILE\nS, E\n*END STEP"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--size", type=float, default=0.7, help="of the elements near the slope, m (0.7)")
    parser.add_argument("-o", metavar="FILE", default="slope.inp")
    arguments = parser.parse_args()
    with open(arguments.o, "w", encoding="ascii", newline="\n") as deck:
        deck.writelines(line + "\n" for line in lines(arguments.size))


if __name__ == "__main__":
    main()
