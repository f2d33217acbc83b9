#!/usr/bin/env python3
"""The factor of safety of a CalculiX model by strength reduction.

The yield stresses under *PLASTIC are divided by a factor F, which rises in steps until the solver no longer converges;
bisection then finds the last F that it solves. The history goes into MODEL_NAME_fos.out beside the deck, the model at
the last F into MODEL_last.inp and MODEL_last.frd.
"""
import argparse
import collections
import math
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

Trial = collections.namedtuple("Trial", "iterations displacement factor converged")

# What the solver says when it gives up an increment. Its running out of increments is no sign of a collapse.
GIVEN_UP = re.compile(r"\*ERROR: (increment size smaller than minimum|too many cutbacks|too many iterations needed|"
                      r"solution seems to diverge)")


class Failure(Exception):
    """Why there is no result, as one sentence."""


def keyword(line):
    """*Solid Section, ELSET=A -> *SOLIDSECTION; empty for data and comments."""
    return re.sub(r"\s", "", line.split(",")[0]).upper() if re.match(r"\*[^*]", line) else ""


def reduced(lines, factor):
    """The lines of a deck with every yield stress under *PLASTIC divided by the factor."""
    out, card, count = [], "", 0
    for number, line in enumerate(lines, 1):
        if line.startswith("*"):
            card = keyword(line) or card
        elif card == "*PLASTIC" and line.strip():
            stress, *rest = line.split(",")
            try:
                line = ",".join([f"{float(stress) / factor:.9g}", *rest])
            except ValueError:
                raise Failure(f"line {number} of the deck: the yield stress '{stress.strip()}' is no number")
            count += 1
        out.append(line)
    if not count:
        raise Failure("the deck has no yield stress to reduce: give its material *PLASTIC in the deck itself")
    return out


def period(lines):
    """The time at the end of the last step: the second number under *STATIC, 1 without it."""
    found = [i for i, line in enumerate(lines) if keyword(line) == "*STATIC"]
    if not found:
        raise Failure("the deck has no *STATIC step; only static models can be reduced")
    data = lines[found[-1] + 1].split(",") if found[-1] + 1 < len(lines) else []
    try:
        return float(data[1])
    except (IndexError, ValueError):
        return 1.0


def largest_displacement(lines, reached):
    """The length of the largest displacement in the last equilibrium; reached: its time.

    A solver that gives up adds a block of its last attempt, which is no equilibrium and lies behind that time.
    """
    if reached == 0:
        return 0.0
    largest, current = None, None
    for line in lines:
        if line.startswith("  100C"):
            current = None if float(line[12:24]) > reached * (1 + 1e-6) else 0.0
        elif line.startswith(" -4"):
            current = current if line.split()[1] == "DISP" else None
            largest = largest if current is None else current
        elif current is not None and line.startswith(" -1"):
            length = math.hypot(*(float(line[at:at + 12]) for at in (13, 25, 37)))
            if not math.isfinite(length):
                raise Failure(f"the solver left a displacement that is not finite at node {line[3:13].strip()}")
            largest = max(largest, length)
    if largest is None:
        raise Failure("the solver left no displacements: request U under *NODE FILE, without FREQUENCY")
    return largest


def judge(log, status, convergence, results, end):
    """(iterations, largest displacement, converged, share of the time reached) of a run from what it wrote.

    log: what it printed; status, convergence, results: the lines of its .sta, .cvg and .frd; end: time to be reached.
    The exit status of the solver says nothing.
    """
    for phrase in ("cannot be interpreted", "parameter not recognized"):
        if phrase in log:
            where = log[log.rfind("\n", 0, log.index(phrase)) + 1:]
            raise Failure("the solver did not understand the deck: " + " ".join(where.split()[:12]))
    given_up = GIVEN_UP.search(log)
    if not given_up and (error := re.search(r"\*ERROR.*(\n[ \t]{5,}\S.*)?", log)):
        raise Failure("the solver stopped: " + " ".join(error[0].split()))
    if not given_up and "Job finished" not in log:
        raise Failure("the solver ended without a word; the last was: " + " ".join(log.split()[-12:]))
    rows = [line.split() for line in convergence if re.match(r"(\s*\d+){4}\s", line)]
    ends = [line.split() for line in status if re.match(r"(\s*\d+){3}U?\s", line)]
    complete = results and (results[-1].strip() == "9999" or (given_up and results[-1].strip() == "-3"))
    if not (rows and ends and complete):
        raise Failure("files of the solver are cut short; is the disk full?")
    if not given_up and (ends[-1][2].endswith("U") or abs(float(ends[-1][5]) - end) > 1e-5 * end):
        raise Failure(f"the solver finished at time {ends[-1][5]} instead of {end:g}")
    displacement = largest_displacement(results, float(ends[-1][4]))
    return len(rows), displacement, not given_up, float(ends[-1][5]) / end


def search(solve, start, step, within, limit):
    """All trials in order: upwards from start until one does not converge, then bisection.

    solve(F) gives a Trial. The last that converged is within `within` (relative) of the first that does not.
    """
    def rounded(factor):
        return round(factor, 6)

    trials = [solve(rounded(start))]
    if not trials[0].converged:
        raise Failure(f"the model does not stand at F = {start:g}: begin lower, with --from {start / 2:g}")
    low = trials[0].factor
    while trials[-1].converged:
        low = trials[-1].factor
        if low >= limit:
            raise Failure(f"the model still stands at F = {low:g}: check its loads, or raise --limit")
        trials.append(solve(rounded(low + step)))
    high = trials[-1].factor
    while high - low > within * low:
        trials.append(solve(rounded((low + high) / 2)))
        if trials[-1].converged:
            low = trials[-1].factor
        else:
            high = trials[-1].factor
    return trials


def history(case, trials):
    """The text of a history file: a block of one case that ends with an empty line."""
    rows = [f"SUBCASE : {case}", f"{'ITERATION':>10} {'DISPLACEMENT':>14} {'FOS':>10} {'CONVERGED':>10}"]
    for trial in trials:
        flag = "T" if trial.converged else "F"
        rows.append(f"{trial.iterations:10d} {trial.displacement:14.6e} {trial.factor:10.6f} {flag:>10}")
    return "\n".join(rows) + "\n\n"


def replace(contents):
    """Writes {path: bytes}; all files are the former or the new ones, none a part."""
    partial = {path: path.with_name(f"{path.name}.{os.getpid()}.part") for path in contents}
    try:
        for path, content in contents.items():
            try:
                with open(partial[path], "wb") as out:
                    out.write(content)
                    out.flush()
                    os.fsync(out.fileno())
            except OSError as error:
                raise Failure(f"'{path}' cannot be written: {error.strerror}")
        for path in contents:
            partial[path].replace(path)
    finally:
        for path in partial.values():
            path.unlink(missing_ok=True)


class Solver:
    """Solves the deck with reduced strength, each F in a folder of its own, and keeps the last that converged."""

    def __init__(self, program, deck, folder):
        self.program, self.folder = program, folder
        self.lines = deck.read_text(encoding="utf-8", errors="surrogateescape").splitlines()
        self.end = period(self.lines)
        self.last = None  # deck and results of the last F that converged

    def __call__(self, factor):
        print(f"F = {factor:.4f}: ", end="", flush=True)
        began = time.monotonic()
        try:
            iterations, displacement, converged, share = self.run(factor)
        except BaseException:
            print("failed", flush=True)
            raise
        outcome = "converged" if converged else f"gave up at {100 * share:.1f} % of the load"
        print(f"{outcome}, {iterations} iterations, largest displacement {displacement:.4g}, "
              f"{time.monotonic() - began:.1f} s", flush=True)
        return Trial(iterations, displacement, factor, converged)

    def run(self, factor):
        """What judge() says of this F."""
        folder = self.folder / f"{factor:.6f}"
        folder.mkdir()
        deck = folder / "reduced.inp"
        deck.write_text("\n".join(reduced(self.lines, factor)) + "\n", encoding="utf-8", errors="surrogateescape")
        try:
            run = subprocess.run([self.program, "reduced"], cwd=folder, stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        except OSError as error:
            raise Failure(f"the solver '{self.program}' cannot be started ({error.strerror}): install calculix-ccx "
                          "or name it with --solver")
        if run.returncode < 0:
            raise Failure(f"the solver was ended by signal {-run.returncode}")

        def lines(ending):
            path = deck.with_suffix(ending)
            return path.read_text(encoding="latin-1").splitlines() if path.exists() else []

        answer = judge(run.stdout.decode("latin-1"), lines(".sta"), lines(".cvg"), lines(".frd"), self.end)
        if answer[2]:
            self.last = deck.read_bytes(), deck.with_suffix(".frd").read_bytes()
        return answer


def reduce(arguments):
    if not arguments.deck.is_file():
        raise Failure(f"the deck '{arguments.deck}' is not there; samples/slope/make_deck.py writes one")
    stem = arguments.deck.with_suffix("")
    with tempfile.TemporaryDirectory(prefix="strength-reduction-") as folder:
        solver = Solver(arguments.solver, arguments.deck, pathlib.Path(folder))
        trials = search(solver, arguments.start, arguments.step, arguments.within, arguments.limit)
        deck, results = solver.last
    target = stem.with_name(f"{stem.name}_{arguments.name}_fos.out")
    replace({stem.with_name(stem.name + "_last.inp"): deck, stem.with_name(stem.name + "_last.frd"): results,
             target: history(arguments.case, trials).encode()})
    low = max(trial.factor for trial in trials if trial.converged)
    high = min(trial.factor for trial in trials if not trial.converged)
    print(f"Factor of safety: {low:.4f} (does not converge at {high:.4f})\nHistory: {target}")


def main():
    def positive(text):
        value = float(text)
        if not (0 < value < math.inf):
            raise ValueError
        return value

    def part_of_a_file_name(text):
        if not text or text != text.strip() or re.search(r'[/\\:*?"<>|\0-\x1f]', text):
            raise ValueError
        return text

    def one_line(text):
        if not text.strip() or not text.isprintable():
            raise ValueError
        return text

    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("deck", type=pathlib.Path, help="a CalculiX deck whose material has *PLASTIC")
    parser.add_argument("--name", type=part_of_a_file_name, default="Slope", help="NAME of the history file (Slope)")
    parser.add_argument("--case", type=one_line, default="Gravity", help="the case in the history file (Gravity)")
    parser.add_argument("--from", type=positive, default=1.0, dest="start", help="the first F (1)")
    parser.add_argument("--step", type=positive, default=0.1, help="by which F rises until the first failure (0.1)")
    parser.add_argument("--within", type=positive, default=0.005, help="relative width that ends the bisection (0.005)")
    parser.add_argument("--limit", type=positive, default=20.0, help="F at which a model that stands is given up (20)")
    parser.add_argument("--solver", default="ccx", help="the program (ccx)")
    arguments = parser.parse_args()
    try:
        reduce(arguments)
    except Failure as failure:
        message = str(failure)
    except OSError as error:
        message = f"{error.filename or 'a file'} cannot be read or written: {error.strerror}"
    except KeyboardInterrupt:
        message = "interrupted; nothing was written"
    else:
        return 0
    print(f"error: {message}", file=sys.stderr)
    return 1


if __name__ == "__main__":
    sys.exit(main())
