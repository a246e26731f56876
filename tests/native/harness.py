"""What the tests of our own native build share: a working directory, and the programs under test.

The tests take paths from the environment. They run by
    KRELCC=build/release/krelcc KREL_TEST_NATIVE=build/release/native \\
        python3 tests/native/test_command.py
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(SOURCES / "tests"))
import native_build  # noqa: E402 (after the path is known)

KRELCC = pathlib.Path(os.environ["KRELCC"]).resolve()
BUILD = KRELCC.parent
RUNTIME = BUILD / "codegen" / "runtime.o"
OBJECTS = BUILD / "tests" / "native" / "krel_native_objects"
NATIVE = pathlib.Path(native_build.FOLDER) / "gcc"
TIMEOUT_SECONDS = 240


def system_tool(name):
    """The path of a program of the system, or None."""
    for folder in os.environ["PATH"].split(":"):
        path = pathlib.Path(folder) / name
        if folder != native_build.FOLDER and os.access(path, os.X_OK):
            return path
    return None


def run(*command, environment=None, **options):
    """Runs a command to its end; its status, standard output and standard error, as text."""
    changed = {**os.environ, "LC_ALL": "C", "ASAN_OPTIONS": "detect_leaks=0", **(environment or {})}
    ended = subprocess.run(
        [str(word) for word in command], stdin=subprocess.DEVNULL, capture_output=True,
        timeout=TIMEOUT_SECONDS, check=False, text=True, errors="surrogateescape",
        env={name: value for name, value in changed.items() if value is not None}, **options)
    return ended.returncode, ended.stdout, ended.stderr


class NativeTest(unittest.TestCase):
    """A test with a fresh working directory, `self.directory`."""

    maxDiff = None

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.directory = pathlib.Path(temporary.name).resolve()

    def run_here(self, *command, **options):
        return run(*command, cwd=options.pop("cwd", self.directory), **options)

    def write(self, name, text):
        path = self.directory / name
        path.write_text(text)
        return path
