#!/usr/bin/env python3
"""Tests of samples/slope; the run of the whole sample on a coarse mesh needs ccx and takes a few seconds."""
import math
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SAMPLE = pathlib.Path(__file__).resolve().parents[2] / "samples" / "slope"
sys.path.insert(0, str(SAMPLE))
sys.dont_write_bytecode = True
import make_deck
import slip_circle
import strength_reduction as reduction

# Taylor, Stability of earth slopes, 1937: (angle, depth of the base over the height) -> c / (F gamma H).
TAYLOR = [(90, 1, 0.261), (75, 1, 0.219), (60, 1, 0.191), (60, 1.2, 0.191), (53, 10, 0.181), (45, 1.5, 0.174),
          (45, 10, 0.181), (30, 10, 0.181)]

DECK = ["*material, Name=A", "*Plastic", "** yield, strain", "100., 0.", "*Elastic", "1000., 0.3", "*MATERIAL, NAME=B",
        "* PLASTIC , HARDENING=ISOTROPIC", " 50, 0.,20.", "60,0.1, 20.", "*STEP", "*STATIC", "0.1, 2.", "*END STEP"]

STATUS = ["SUMMARY OF JOB INFORMATION", "  STEP      INC     ATT  ITRS     TOT TIME     STEP TIME      INC TIME",
          "     1          1     1     2  0.500000E+00  0.500000E+00  0.500000E+00",
          "     1          2     1     3  0.100000E+01  0.100000E+01  0.500000E+00"]
STUCK = STATUS[:3] + ["     1          2     1U    4  0.500000E+00  0.500000E+00  0.500000E+00"]
ITERATIONS = ["  STEP   INC  ATT   ITER     CONT.   RESID."] + ["     1     1     1     1        0  0.0000E+00"] * 5
GAVE_UP = " *ERROR: increment size smaller than minimum\n best solution and residuals are in the frd file\n"


def results(*blocks, end=" 9999"):
    """Lines of a result file: (time, name, rows of three)."""
    lines = ["    1C"]
    for time, name, values in blocks:
        lines += [f"  100CL  101 {time:11.9f}           2                     0    1           1"]
        lines += [f" -4  {name}        4    1"]
        lines += [f" -1{node:10d}" + "".join(f"{v:12.5E}" for v in row) for node, row in enumerate(values, 1)] + [" -3"]
    return lines + ([end] if end else [])


HALF = (0.5, "DISP", [(0, 0.3, -0.4), (-0.1, 0, 0)])
WHOLE = (1.0, "DISP", [(0, 0.6, -0.8), (9e-3, 0, 0)])
STRESS = (1.0, "STRESS", [(700, 0, 0), (0, 0, 0)])


class Circles(unittest.TestCase):
    def test_the_worst_circle_is_that_of_the_published_table(self):
        for angle, depth, published in TAYLOR:
            with self.subTest(angle=angle, depth=depth):
                factor, _ = slip_circle.critical(math.radians(angle), depth)
                self.assertAlmostEqual(1 / factor, published, delta=0.0006)


class Decks(unittest.TestCase):
    def test_only_yield_stresses_are_divided(self):
        lines = reduction.reduced(DECK, 1.25)
        changed = {i: line for i, (line, old) in enumerate(zip(lines, DECK)) if line != old}
        self.assertEqual(changed, {3: "80, 0.", 8: "40, 0.,20.", 9: "48,0.1, 20."})

    def test_decks_without_what_is_needed_are_refused(self):
        for lines, words in ((["*ELASTIC", "1., 0."], "no yield stress"), (["*PLASTIC", "a, 0."], "line 2.*'a'")):
            with self.assertRaisesRegex(reduction.Failure, words):
                reduction.reduced(lines, 2)
        with self.assertRaisesRegex(reduction.Failure, "no \\*STATIC"):
            reduction.period(DECK[:10])
        self.assertEqual(reduction.period(DECK), 2.0)
        self.assertEqual(reduction.period(DECK[:12] + ["*END STEP"]), 1.0)

    def test_the_deck_of_the_sample_is_what_its_program_writes(self):
        self.assertEqual((SAMPLE / "slope.inp").read_text(), "".join(line + "\n" for line in make_deck.lines(0.7)))


class Runs(unittest.TestCase):
    def test_a_run_is_judged_by_what_the_solver_wrote(self):
        whole, end = results(HALF, WHOLE, STRESS), "\n Job finished\n"
        self.assertEqual(reduction.judge(end, STATUS, ITERATIONS, whole, 1.0), (5, 1.0, True, 1.0))
        attempt = results(HALF, (1.0, "DISP", [(1e9, 0, 0), (0, 0, 0)]), end=None)
        self.assertEqual(reduction.judge(GAVE_UP, STUCK, ITERATIONS, attempt, 1.0), (5, 0.5, False, 0.5))
        at_once = STATUS[:2] + [STUCK[3].replace("0.500000E+00", "0.000000E+00")]
        self.assertEqual(reduction.judge(GAVE_UP, at_once, ITERATIONS, attempt, 1.0), (5, 0.0, False, 0.0))

    def test_anything_else_is_a_failure_and_no_collapse(self):
        whole, end = results(HALF, WHOLE), "\n Job finished\n"
        unknown, full = " *WARNING in x. Card image cannot be interpreted:\n *FOO\n", "stopped: .*max. # of incre"
        for log, status, convergence, frd, words in (
                (unknown + end, STATUS, ITERATIONS, whole, "FOO"),
                (" *WARNING reading *X: parameter not recognized:\n   BAR\n" + end, STATUS, ITERATIONS, whole, "BAR"),
                (" *ERROR in nonlingeo: max. # of increments reached\n", STUCK, ITERATIONS, whole, full),
                (" *ERROR in e_c3d: nonpositive jacobian\n        determinant in element 31\n", [], [], [],
                 "stopped: .*element 31"),
                (" STEP 1\n", STATUS, ITERATIONS, whole, "without a word.*STEP 1"),
                (end, STATUS[:3], ITERATIONS, whole, "at time 0.5"),
                (end, STUCK, ITERATIONS, whole, "finished at time"),
                (end, STATUS, ITERATIONS, whole[:-1], "disk full"),
                (end, [], ITERATIONS, whole, "disk full"),
                (GAVE_UP, STUCK, [], whole, "disk full"),
                (GAVE_UP, STUCK, ITERATIONS, whole[:5], "disk full"),
                (end, STATUS, ITERATIONS, results(STRESS), "no displacements"),
                (end, STATUS, ITERATIONS, results((1.0, "DISP", [(0, math.nan, 0)])), "not finite at node 1")):
            with self.subTest(words), self.assertRaisesRegex(reduction.Failure, words):
                reduction.judge(log, status, convergence, frd, 1.0)


class Search(unittest.TestCase):
    def test_the_last_factor_is_known_to_the_width(self):
        for collapse, start, step, within in ((1.0, 1, 0.1, 0.01), (1.05, 1, 0.1, 0.005), (1.3, 1, 0.1, 0.01),
                                              (1.999, 0.5, 0.25, 0.001), (7.77, 1, 3, 0.01)):
            with self.subTest(collapse=collapse):
                trials = reduction.search(lambda f: reduction.Trial(1, f, f, f <= collapse), start, step, within, 20)
                stood = [t.factor for t in trials if t.converged]
                fell = [t.factor for t in trials if not t.converged]
                self.assertEqual(stood, sorted(stood))
                self.assertTrue(stood[-1] <= collapse < min(fell) <= stood[-1] * (1 + within), (stood, fell))

    def test_a_model_that_never_stands_or_never_falls_is_an_error(self):
        for stands, words in ((False, "not stand at F = 1: begin lower, with --from 0.5"), (True, "stands at F = 2")):
            with self.assertRaisesRegex(reduction.Failure, words):
                reduction.search(lambda f: reduction.Trial(1, 1.0, f, stands), 1, 0.5, 0.01, 2)

    def test_the_history_is_a_block_that_ends_with_an_empty_line(self):
        trials = [reduction.Trial(11, 0.0371, 1.0, True), reduction.Trial(48, 26.97, 1.4, False)]
        self.assertEqual(reduction.history("Gravity", trials),
                         "SUBCASE : Gravity\n"
                         " ITERATION   DISPLACEMENT        FOS  CONVERGED\n"
                         "        11   3.710000e-02   1.000000          T\n"
                         "        48   2.697000e+01   1.400000          F\n"
                         "\n")


class Program(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)

    def run_program(self, *arguments, limit="unlimited"):
        command = ["bash", "-c", f'ulimit -f {limit}; exec "$0" "$@"', sys.executable,
                   str(SAMPLE / "strength_reduction.py"), *arguments]
        return subprocess.run(command, cwd=self.folder, capture_output=True, text=True)

    def write_deck(self, size):
        (self.folder / "slope.inp").write_text("".join(line + "\n" for line in make_deck.lines(size)))

    def test_bad_situations_end_with_a_sentence_and_leave_nothing(self):
        self.write_deck(5.0)
        mute = self.folder / "mute"
        mute.write_text("#!/bin/sh\n")
        mute.chmod(0o755)
        for arguments, limit, words in (
                (["none.inp"], "unlimited", "'none.inp' is not there"),
                (["slope.inp", "--solver", "no-such-solver"], "unlimited", "'no-such-solver' cannot be started"),
                (["slope.inp", "--solver", str(mute)], "unlimited", "without a word"),
                (["slope.inp"], "8", "signal 25|cut short|File too large|solver stopped"),
                (["slope.inp", "--from", "3"], "unlimited", "does not stand at F = 3")):
            with self.subTest(arguments=arguments, limit=limit):
                run = self.run_program(*arguments, limit=limit)
                self.assertEqual(run.returncode, 1, run)
                self.assertRegex(run.stderr, f"^error: .*({words}).*\n$")
                self.assertEqual(sorted(p.name for p in self.folder.iterdir()), ["mute", "slope.inp"])

    def test_the_factor_of_safety_of_a_coarse_mesh_is_within_two_per_cent(self):
        self.write_deck(2.0)
        run = self.run_program("slope.inp", "--from", "1.2", "--name", "Test")
        self.assertEqual(run.returncode, 0, run)
        rows = [line.split() for line in (self.folder / "slope_Test_fos.out").read_text().splitlines()[2:-1]]
        last = max(float(factor) for _, _, factor, flag in rows if flag == "T")
        published = make_deck.COHESION / (0.191 * make_deck.DENSITY * make_deck.GRAVITY * make_deck.HEIGHT)
        self.assertLess(abs(last / published - 1), 0.02, run.stdout)
        self.assertIn(f"Factor of safety: {last:.4f}", run.stdout)
        displacements = [float(row[1]) for row in rows if row[3] == "T"]
        self.assertEqual(displacements, sorted(displacements))
        self.assertTrue((self.folder / "slope_last.frd").read_text().endswith(" 9999\n"))


if __name__ == "__main__":
    if not shutil.which("ccx"):
        sys.exit("error: ccx is not there; scripts/ensure-packages test installs it")
    unittest.main()
