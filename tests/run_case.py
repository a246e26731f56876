#!/usr/bin/env python3
"""Runs one golden case: compiles its program with krelcc and compares what comes out.

A case is a folder with the program, `input.krl` or a script `input.py` that prints it, and

    args                          further command-line arguments, one a line
    expected.status               krelcc's exit status; absent means 0 (134: it aborted)
    expected.stderr               krelcc's standard error; absent means empty
    expected.stdout               krelcc's standard output; not compared when absent
    expected.{ast.json,semantic.json,ir,s}
                                  the dumps; each one present is asked for and compared
    expected.run                  what the compiled program prints; it is run when this is present
    expected.run.status           the program's exit status; absent means 0 (136: it died of SIGFPE)
    expected.run.stderr           the program's standard error; absent means empty
    needs-c-library               what the program calls of the C library; our own native build then
                                  has to leave it to another one (see native_build.py)

The name of a case begins with `bad-` exactly when compiling it must fail.
Usage: run_case.py --krelcc PATH [--update] CASE...
With --update the expectations that a case already has are rewritten; read the difference.
"""

import argparse
import difflib
import pathlib
import shutil
import subprocess
import sys
import tempfile

import native_build

DUMP_FLAGS = {
    "ast.json": "--ast-dump",
    "semantic.json": "--ast-semantic-dump",
    "ir": "--ir-dump",
    "s": "--asm-dump",
}
TIMEOUT_SECONDS = 240


class Case:
    """One case folder: its expectations, and the differences found so far."""

    def __init__(self, folder, update):
        self.folder = folder
        self.update = update
        self.failures = []

    def file(self, name):
        return self.folder / f"expected.{name}"

    def compare(self, name, actual, default=None):
        """Compares bytes with an expectation; without a file `default` is expected, if given."""
        path = self.file(name)
        if self.update and (path.exists() or (default is not None and actual != default)):
            if actual == default:
                path.unlink()
            else:
                path.write_bytes(actual)
            return
        if path.exists():
            expected = path.read_bytes()
        elif default is not None:
            expected = default
        else:
            return
        if name.endswith("status"):
            expected, actual = expected.strip(), actual.strip()
        if expected != actual:
            self.failures.append(difference(path.name, expected, actual))


def difference(name, expected, actual):
    """The difference of two byte strings as text; other bytes than ASCII are shown escaped."""
    def lines(data):
        return [repr(line)[2:-1] + "\n" for line in data.split(b"\n")]
    shown = difflib.unified_diff(lines(expected), lines(actual), name, "actual")
    return "".join(list(shown)[:200])


def exit_status(returncode):
    """The status as a shell shows it: 128 and the signal's number for a killed process."""
    status = returncode if returncode >= 0 else 128 - returncode
    return f"{status}\n".encode()


def run(command, directory):
    environment = {**native_build.environment(), "LC_ALL": "C", "ASAN_OPTIONS": "detect_leaks=0"}
    return subprocess.run(command, cwd=directory, env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, timeout=TIMEOUT_SECONDS, check=False)


def write_input(folder, target):
    generator = folder / "input.py"
    if generator.exists():
        with open(target, "wb") as out:
            subprocess.run([sys.executable, str(generator)], stdout=out, check=True)
    else:
        shutil.copyfile(folder / "input.krl", target)


def by_other_expected(folder):
    """Whether the program is one that our own native build has to leave to another one."""
    return native_build.FOLDER is not None and (folder / "needs-c-library").exists()


def run_case(krelcc, folder, update):
    case = Case(folder, update)
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        write_input(folder, directory / "input.krl")
        dumps = [dump for dump in DUMP_FLAGS if case.file(dump).exists()]
        arguments = folder / "args"
        extra = arguments.read_text().splitlines() if arguments.exists() else []
        compiled = run([krelcc, "input.krl", *extra, *(DUMP_FLAGS[dump] for dump in dumps)],
                       directory)
        case.compare("status", exit_status(compiled.returncode), b"0\n")
        case.compare("stderr", compiled.stderr, b"")
        case.compare("stdout", compiled.stdout)
        for dump in dumps:
            path = directory / f"input.{dump}"
            case.compare(dump, path.read_bytes() if path.exists() else b"<no file>\n")
        failed = compiled.returncode != 0
        if failed != folder.name.startswith("bad-"):
            case.failures.append(f"a case is named bad-... exactly when it fails: {folder.name}\n")
        program = directory / "input"
        if failed and program.exists():
            case.failures.append("an executable was left behind by a failed compilation\n")
        if case.file("run").exists() and not failed:
            if native_build.is_by_other(program) != by_other_expected(folder):
                case.failures.append("the wrong native build has made the executable\n")
            ran = run([str(program)], directory)
            case.compare("run", ran.stdout)
            case.compare("run.status", exit_status(ran.returncode), b"0\n")
            case.compare("run.stderr", ran.stderr, b"")
    return case.failures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--krelcc", required=True,
                        type=lambda text: str(pathlib.Path(text).resolve()))
    parser.add_argument("--update", action="store_true")
    parser.add_argument("cases", nargs="+", type=pathlib.Path, metavar="CASE")
    options = parser.parse_args()
    failed = 0
    for folder in options.cases:
        failures = run_case(options.krelcc, folder, options.update)
        if failures:
            failed += 1
            print(f"FAILED {folder}")
            print("".join(failures))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
