#!/usr/bin/env python3
"""Plants the faults of mutants.toml in a copy of the sources, one at a time, and tests each.

Usage: mutants.py [NAME]...   (see script/mutants)

A mutant is killed when a test fails (or does not end) that passes without the fault: the killer is
run again when the fault has been taken out, and a test that fails then as well is reported as
unreliable. The tests run in an order in which most mutants live for a few seconds only: the unit
tests of the folder that the fault is in, the tests that the list names, the other quick ones, and
last the slow ones. What the killer printed is kept in a file for each mutant.
"""

import collections.abc
import dataclasses
import fnmatch
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import tomllib

ROOT = pathlib.Path(__file__).resolve().parents[2]
LIST = pathlib.Path(__file__).with_name("mutants.toml")
SCRATCH = ROOT / "build" / "mutants"
TREE = SCRATCH / "tree"
BUILD = SCRATCH / "build"
RESULTS = SCRATCH / "results.json"
OUTPUT = SCRATCH / "output"

JOBS = str(os.cpu_count())
TEST_SECONDS = 300  # a test or a program of unit tests that takes longer does not end
SLOW = "^(soak|limits)/"
OF_THE_PROGRAM = "^(case|cli)/"  # they need PROGRAM, nothing else
PROGRAM = ["krelcc", "krel", "krel_runtime", "krel_native_compiler"]
PASSED = re.compile(r"^ *(Start +\d+: |\d+/\d+ Test .* Passed )")  # CTest's lines on other tests


@dataclasses.dataclass(frozen=True)
class Mutant:
    name: str
    file: str
    find: str
    replace: str
    breaks: str
    first: str = ""

    def mutated(self, text):
        return text.replace(self.find, self.replace)


@dataclasses.dataclass(frozen=True)
class Failure:
    """A test that failed, what it printed, and how to run it again: gives a Failure or None."""
    test: str
    output: str
    again: collections.abc.Callable


class Invalid(Exception):
    """A mutant, or the tree itself, that cannot be tested."""


def run(command):
    return subprocess.run(command, cwd=TREE, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", check=False)


def tracked_files():
    """The files of the work tree, new ones included, relative to its root."""
    listed = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=ROOT,
                            capture_output=True, check=True).stdout.decode().split("\0")
    return [name for name in listed if name and (ROOT / name).is_file()]


def copy_tree(names):
    """Makes TREE equal to the work tree. Files that have not changed keep their times."""
    for name in names:
        source, target = ROOT / name, TREE / name
        if not target.exists() or target.read_bytes() != source.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
    wanted = {TREE / name for name in names}
    for path in TREE.rglob("*"):
        if path.is_file() and path not in wanted and "__pycache__" not in path.parts:
            path.unlink()


def digest_of(names):
    digest = hashlib.sha256()
    for name in sorted(names):
        if ROOT / name != LIST:
            digest.update(name.encode() + b"\0" + (ROOT / name).read_bytes() + b"\0")
    return digest.hexdigest()


def build_or_raise(targets):
    if not targets:
        return
    result = run(["cmake", "--build", str(BUILD), "-j", JOBS, "--target", *targets])
    if result.returncode != 0:
        raise Invalid("does not build:\n" + result.stdout[-3000:])


def unit_tests_of(file):
    """The unit test programs for the folder of a source file, as build targets. Beside them, a
    folder may have programs that compare with others."""
    folder = pathlib.PurePath(file).parent
    return [str(path.relative_to(BUILD))
            for tests in (BUILD / "tests" / "unit" / folder, BUILD / "tests" / folder)
            for path in sorted(tests.glob("*_test"))]


def failing_unit_test(program, tests="*"):
    """The first of a program's unit tests that fails, or None. A program that crashes or does not
    end counts as a whole."""
    def failure(what, output, again="*"):
        return Failure(what, output, lambda: failing_unit_test(program, again))
    try:
        command = [str(BUILD / program), "--gtest_brief=1", f"--gtest_filter={tests}"]
        result = subprocess.run(command, cwd=BUILD, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                timeout=TEST_SECONDS, check=False)
    except subprocess.TimeoutExpired as expired:
        output = (expired.stdout or b"").decode(errors="replace")
        return failure(f"{program} (does not end)", output)
    if result.returncode == 0:
        return None
    output = result.stdout.decode(errors="replace")
    failed = [line.split("]", 1)[1].split()[0].rstrip(",") for line in output.splitlines()
              if line.startswith("[  FAILED  ]") and "." in line]
    if not failed:
        return failure(f"{program} (crashed)", output)
    return failure(failed[0], output, failed[0])


def failing_unit_test_of_all():
    """The same for all programs of unit tests. CTest runs each of their tests in a process of its
    own; these runs, like those with a fault, have all tests of a program in one."""
    programs = [str(path.relative_to(BUILD))
                for path in sorted((BUILD / "tests" / "unit").rglob("*_test")) if path.is_file()]
    return next(filter(None, map(failing_unit_test, programs)), None)


def failing_test(*selection):
    """The first test of a selection of CTest's that fails, or None."""
    result = run(["ctest", "--test-dir", str(BUILD), "-j", JOBS, "--stop-on-failure",
                  "--output-on-failure", "--no-tests=error", "--timeout", str(TEST_SECONDS),
                  *selection])
    if result.returncode == 0:
        return None
    lines = result.stdout.rpartition("The following tests FAILED:")[2].splitlines()
    names = [line.split(" - ", 1)[1].split(" (")[0] for line in lines if " - " in line]
    if not names:
        raise Invalid("ctest failed:\n" + result.stdout[-2000:])
    output = "\n".join(line for line in result.stdout.splitlines() if not PASSED.match(line))
    return Failure(names[0], output + "\n",
                   lambda: failing_test("-R", f"^{re.escape(names[0])}$"))


def first_failure(mutant):
    """The first test that fails on what is in the tree, and the targets that it needs; or None, and
    all targets."""
    programs = unit_tests_of(mutant.file)
    build_or_raise(programs)
    for program in programs:
        if (failure := failing_unit_test(program)) is not None:
            return failure, [program]
    build_or_raise(PROGRAM)
    if failure := ((mutant.first and failing_test("-R", f"^({mutant.first})")) or
                   failing_test("-R", OF_THE_PROGRAM)):
        return failure, PROGRAM
    build_or_raise(["all"])
    return (failing_test("-E", f"{OF_THE_PROGRAM}|{SLOW}") or failing_test("-R", SLOW)), ["all"]


def result_of(mutant):
    """Plants the fault, tests it and takes it out again. Gives what is kept as its result."""
    path = TREE / mutant.file
    original = path.read_text()
    output = OUTPUT / f"{mutant.name}.txt"
    output.unlink(missing_ok=True)
    began = time.monotonic()
    try:
        path.write_text(mutant.mutated(original))
        failure, targets = first_failure(mutant)
    finally:
        path.write_text(original)  # newer than all that was built with the fault
    result = {"killed_by": None, "unreliable": None}
    if failure is not None:
        build_or_raise(targets)
        repeated = failure.again()
        result["unreliable" if repeated else "killed_by"] = failure.test
        result["output"] = str(output.relative_to(ROOT))
        output.write_text(failure.output +
                          (f"\nWithout the fault:\n{repeated.output}" if repeated else ""))
    return {**result, "seconds": round(time.monotonic() - began)}


def read_mutants():
    with open(LIST, "rb") as file:
        mutants = [Mutant(**entry) for entry in tomllib.load(file)["mutant"]]
    faults = []
    names = [mutant.name for mutant in mutants]
    for mutant in mutants:
        count = (ROOT / mutant.file).read_text().count(mutant.find)
        if count != 1:
            faults.append(f"{mutant.name}: the text occurs {count} times in {mutant.file}")
        if names.count(mutant.name) != 1:
            faults.append(f"{mutant.name}: the name is taken twice")
    if faults:
        raise Invalid("\n".join(faults))
    return mutants


def select(mutants, patterns):
    for pattern in patterns:
        if not fnmatch.filter((mutant.name for mutant in mutants), pattern):
            raise Invalid(f"there is no mutant {pattern}")
    return [mutant for mutant in mutants
            if any(fnmatch.fnmatchcase(mutant.name, pattern) for pattern in patterns)]


def prepare(names):
    """Makes the copy of the sources and builds it."""
    copy_tree(names)
    configured = run(["cmake", "-S", str(TREE), "-B", str(BUILD), "-G", "Ninja",
                      "-DCMAKE_BUILD_TYPE=Release", "-DKREL_TESTS=ON"])
    if configured.returncode != 0:
        raise Invalid("cannot be configured:\n" + configured.stdout)
    build_or_raise(["all"])


class Results:
    """What is known of the present sources: whether they pass the tests, and the mutants' results
    by name and text. Kept in a file, after every change."""

    def __init__(self, digest):
        self.kept = {"digest": digest, "is_sound": False, "results": {}}
        if RESULTS.exists():
            stored = json.loads(RESULTS.read_text())
            if stored["digest"] == digest:
                self.kept = stored

    @staticmethod
    def key_of(mutant):
        return "\n".join((mutant.name, mutant.file, mutant.find, mutant.replace))

    def of(self, mutant):
        return self.kept["results"].get(self.key_of(mutant))

    def add(self, mutant, result):
        self.kept["results"][self.key_of(mutant)] = result
        self.store()

    def is_sound(self):
        return self.kept["is_sound"]

    def set_sound(self):
        self.kept["is_sound"] = True
        self.store()

    def store(self):
        RESULTS.write_text(json.dumps(self.kept, indent=1))


def verdict_on(result):
    if result["unreliable"]:
        return f"UNRELIABLE TEST {result['unreliable']}"
    return f"killed by {result['killed_by']}" if result["killed_by"] else "SURVIVED"


def test_mutants(mutants, results, names):
    prepare(names)
    if not results.is_sound():
        if (failure := failing_unit_test_of_all() or failing_test("-E", SLOW)) is not None:
            raise Invalid(f"{failure.test} fails without any fault:\n{failure.output}")
        results.set_sound()
    for mutant in mutants:
        try:
            result = result_of(mutant)
        except Invalid as error:
            raise Invalid(f"{mutant.name}: {error}") from error
        results.add(mutant, result)
        print(f"{mutant.name:44} {result['seconds']:4} s  {verdict_on(result)}", flush=True)


def main(patterns):
    # npm's packages are installed beside the sources, and not in their copy.
    os.environ.setdefault("KREL_NODE", str(ROOT / "build" / "editors" / "node"))
    OUTPUT.mkdir(parents=True, exist_ok=True)
    try:
        selected = select(read_mutants(), patterns or ["*"])
        names = tracked_files()
        results = Results(digest_of(names))
        waiting = [mutant for mutant in selected
                   if patterns or (results.of(mutant) or {"unreliable": True})["unreliable"]]
        if waiting:
            test_mutants(waiting, results, names)
    except Invalid as error:
        print(error, file=sys.stderr)
        return 2
    others = [mutant for mutant in selected if results.of(mutant)["killed_by"] is None]
    print(f"{len(selected) - len(others)} of {len(selected)} mutants were killed.")
    for mutant in others:
        verdict = verdict_on(results.of(mutant))
        print(f"{verdict} {mutant.name}: {mutant.breaks} ({mutant.file})")
    return 1 if others else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
