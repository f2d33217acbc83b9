#!/usr/bin/env python3
"""Holds the local safety of the solved slope against a hand computation at three nodes: safety_test.py VEXA

The hand computation takes the imported stresses; it is printed, so that a failure can be followed.
"""
import csv
import io
import math
import pathlib
import shutil
import subprocess
import sys
import tempfile

SLOPE = pathlib.Path(__file__).resolve().parents[2] / "samples" / "slope"
COHESION = 50.0  # kN/m2, as in slope.toml
NODES = [1, 100, 1000]


def run(*command, folder):
    done = subprocess.run(command, cwd=folder, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"error: {' '.join(map(str, command))} failed\n{done.stdout}{done.stderr}")
    return done.stdout


def values(vexa, folder, analysis, component):
    text = run(vexa, "table", "slope.wkm", "--analysis", analysis, "--component", component, folder=folder)
    rows = list(csv.reader(io.StringIO(text)))[1:]
    found = {}
    for row in rows:  # at nodes, or at the corners of elements
        found.setdefault(int(row[-2]), []).append(float(row[-1]))
    return found


def main():
    vexa = pathlib.Path(sys.argv[1]).resolve()
    with tempfile.TemporaryDirectory() as folder:
        for name in ("slope.inp", "slope.toml"):
            shutil.copy(SLOPE / name, folder)
        run("ccx", "slope", folder=folder)
        run(vexa, "new", "slope.toml", "-o", "slope.wkm", folder=folder)
        run(vexa, "safety", "slope.wkm", "--analysis", "Slope", "--case", "Gravity", "--name", "Safety", folder=folder)
        xx, yy, xy = (values(vexa, folder, "Slope", id) for id in ("432131", "432132", "432134"))
        stored = values(vexa, folder, "Safety", "77101")
    failures = 0
    for node in NODES:
        # No friction: the distance to the strength line is the cohesion, whatever the mean stress.
        radius = max(math.hypot((x - y) / 2, s) for x, y, s in zip(xx[node], yy[node], xy[node]))
        by_hand = COHESION / radius
        print(f"node {node}: xx {xx[node]} yy {yy[node]} xy {xy[node]} kN/m2")
        print(f"    radius {radius:.6g}, factor {COHESION:g} / {radius:.6g} = {by_hand:.6g}; stored {stored[node][0]:.6g}")
        failures += not math.isclose(by_hand, stored[node][0], rel_tol=1e-5)
    return 1 if failures else 0


sys.exit(main())
