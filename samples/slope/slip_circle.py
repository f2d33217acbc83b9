#!/usr/bin/env python3
"""The stability factor N = F gamma H / c of an undrained slope (friction angle 0) by a search over all slip circles.

With a friction angle of 0 the shear strength does not depend on the normal stress, so the equilibrium of moments
about the centre of a circle is exact and no slices are needed. Taylor's stability number is 1 / N.
"""
import argparse
import math


def stability_factor(angle, entry, exit, half):
    """N of one circle; the slope has height 1 and its toe at the origin, `angle` from the horizontal.

    The arc begins at (entry, 0), ends at (exit, 1) behind the crest and spans 2 `half`; all angles in radians.
    Infinite for a circle whose soil does not drive it.
    """
    crest = 1.0 / math.tan(angle)
    length, slope = math.hypot(exit - entry, 1.0), math.atan2(1.0, exit - entry)
    radius = length / (2 * math.sin(half))
    centre = (entry + exit) / 2 - math.sin(slope) * radius * math.cos(half)
    # Weight times lever arm: the segment between chord and arc, and the polygon between chord and ground.
    moment = length ** 3 / 12 * math.sin(slope)
    corners = [(entry, 0.0), (exit, 1.0), (crest, 1.0), (0.0, 0.0)]
    for (x0, y0), (x1, y1) in zip(corners, corners[1:] + corners[:1]):
        moment += (x0 * y1 - x1 * y0) * ((x0 + x1) / 6 - centre / 2)
    return radius ** 2 * 2 * half / moment if moment > 0 else math.inf


def lowest(entry, exit, half):
    """The lowest point of the arc, from the toe."""
    slope = math.atan2(1.0, exit - entry)
    if half <= slope:
        return 0.0
    radius = math.hypot(exit - entry, 1.0) / (2 * math.sin(half))
    return 0.5 + math.cos(slope) * radius * math.cos(half) - radius


def critical(angle, depth):
    """The least N and its (entry, exit, half); the firm base lies `depth` slope heights below the crest."""
    crest = 1.0 / math.tan(angle)

    def factor(circle):
        entry, exit, half = circle
        if entry > 0 or exit <= crest or not 0.01 < half < math.pi / 2 or lowest(*circle) < 1 - depth - 1e-9:
            return math.inf
        return stability_factor(angle, *circle)

    coarse = [(-depth * i / 10, crest + depth * j / 5, k * math.pi / 60)
              for i in range(16) for j in range(1, 16) for k in range(1, 30)]
    best = min(coarse, key=factor)
    size = 0.1 * depth
    while size > 1e-6:
        moves = [(a, b, c) for a in (-size, 0, size) for b in (-size, 0, size) for c in (-size, 0, size)]
        candidate = min((tuple(min(v + d, 0.0) if i == 0 else v + d for i, (v, d) in enumerate(zip(best, move)))
                         for move in moves), key=factor)
        if factor(candidate) < factor(best):
            best = candidate
        else:
            size /= 2
    return factor(best), best


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("angle", type=float, help="of the slope, degrees, above 0 and up to 90")
    parser.add_argument("depth", type=float, help="of the firm base below the crest, in slope heights, from 1")
    arguments = parser.parse_args()
    if not (0 < arguments.angle <= 90 and arguments.depth >= 1):
        parser.error("the angle lies above 0 and up to 90 degrees, the depth is at least 1")
    factor, (entry, exit, half) = critical(math.radians(arguments.angle), arguments.depth)
    print(f"N = F gamma H / c = {factor:.3f} (Taylor's stability number {1 / factor:.4f})")
    print(f"The circle runs from {entry:.3f} to {exit:.3f} slope heights from the toe, "
          f"its lowest point is {-lowest(entry, exit, half):.3f} below the toe.")


if __name__ == "__main__":
    main()
