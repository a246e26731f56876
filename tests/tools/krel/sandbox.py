"""What the tests of krel share: a krel with stand-ins beside it, and a place for temporary files.

The tests take krelcc's path from the environment variable KRELCC, and krel is the one beside it:
    KRELCC=build/release/krelcc python3 tests/tools/krel/test_run.py
"""

import os
import pathlib
import shutil
import signal
import sys
import time

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "cli"))

from harness import CommandLineTest, KRELCC, RUNTIME, TIMEOUT_SECONDS  # noqa: E402

KREL = KRELCC.with_name("krel")
OWN_NATIVE = KRELCC.parent / "native" / "gcc"

# Stand-ins for the native compiler, as commands of a shell. The fourth argument is the output.
REAL = f"PATH='{os.environ['PATH']}' exec gcc \"$@\""
SHELL = '/bin/cp /bin/sh "$4"'  # every program becomes a shell, which can tell how it was started


class KrelTest(CommandLineTest):
    """A test with a copy of krel and krelcc in the folder `home`, beside the folder home/native.

    Every test ends with a look at the place for temporary files: nothing may be left there.
    """

    def setUp(self):
        super().setUp()
        self.temporary = self.directory / "tmp"
        self.temporary.mkdir()
        self.home = self.directory / "home"
        self.program = self.copy(KREL, self.home / "krel")
        self.copy(KRELCC, self.home / "krelcc")
        self.copy(RUNTIME, self.home / "codegen" / "runtime.o")
        self.native(REAL)

    def tearDown(self):
        self.assertEqual(list(self.temporary.iterdir()), [])

    @staticmethod
    def copy(file, target):
        target.parent.mkdir(parents=True, exist_ok=True)
        return pathlib.Path(shutil.copy(file, target))

    @staticmethod
    def script(path, commands):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.unlink(missing_ok=True)
        path.write_text(f"#!/bin/sh\n{commands}\n")
        path.chmod(0o755)

    def native(self, commands):
        """Puts a stand-in for the native compiler beside krel."""
        self.script(self.home / "native" / "gcc", commands)

    def environment(self, changes):
        return super().environment({"TMPDIR": str(self.temporary), **changes})

    def start_krel(self, *arguments, **options):
        return self.start(*arguments, program=self.program, name="krel", **options)

    def krel(self, *arguments, text=None, **options):
        """Runs krel to its end, with a text on its standard input unless that is None."""
        if text is not None:
            path = self.write("standard input", text)
            with open(path, "rb") as stdin:
                return self.krel(*arguments, stdin=stdin, **options)
        process = self.start_krel(*arguments, **options)
        stdout, stderr = process.communicate(timeout=TIMEOUT_SECONDS)
        return process.returncode, stdout, stderr

    def assert_complains(self, result, status, *parts):
        """One line on standard error that says whose it is, and nothing else."""
        code, stdout, stderr = result
        self.assertEqual((code, stdout), (status, ""))
        self.assertRegex(stderr, r"\Akrel: [^\n]+\n\Z")
        for part in parts:
            self.assertIn(part, stderr)

    def wait_for(self, condition, what):
        for _ in range(TIMEOUT_SECONDS * 100):
            if condition():
                return
            time.sleep(0.01)
        self.fail(f"waited in vain for {what}")


def is_running(pid):
    try:
        with open(f"/proc/{pid}/stat", encoding="ascii") as file:
            return file.read().rsplit(")", 1)[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


def ignoring(*numbers):
    """What a child does before it begins, so that it ignores these signals."""
    def prepare():
        for number in numbers:
            signal.signal(number, signal.SIG_IGN)
    return prepare
