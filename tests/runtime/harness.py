"""What the tests of compiled programs share: compiling a source and running the result.

The tests take krelcc's path from the environment variable KRELCC. They run by
    KRELCC=build/release/krelcc python3 tests/runtime/test_output.py
and with our own native build by the same with KREL_TEST_NATIVE=build/release/native.
"""

import collections
import os
import pathlib
import resource
import signal
import subprocess
import sys
import tempfile
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1]))
import native_build  # noqa: E402 (after the path is known)

KRELCC = pathlib.Path(os.environ["KRELCC"]).resolve()
RUNTIME = KRELCC.parent / "codegen" / "runtime.o"
OBJECTS = KRELCC.parent / "tests" / "runtime"
SOURCES = pathlib.Path(__file__).resolve().parents[2]
TIMEOUT_SECONDS = 60

# How a program ended: its status (the negated number of the signal that killed it) and what it
# wrote, as bytes.
Outcome = collections.namedtuple("Outcome", ["status", "stdout", "stderr"])

DIVIDED_BY_ZERO = -signal.SIGFPE
FAULTED = -signal.SIGSEGV
ABORTED = -signal.SIGABRT
MEGABYTE = 1 << 20


def error_line(what):
    """The line by which a program says why it ends."""
    return f"krel: runtime error: {what}\n".encode()


def main_with(statements):
    """A program that has only a main."""
    return "void main() {\n" + statements + "\n}\n"


class RuntimeTest(unittest.TestCase):
    """A test with a fresh working directory, `self.directory`, for sources and programs."""

    maxDiff = None

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.directory = pathlib.Path(temporary.name).resolve()

    def compile(self, source, name="program"):
        """Compiles the text of a program; the path of the executable."""
        path = self.directory / f"{name}.krl"
        path.write_text(source)
        compiled = subprocess.run(
            [KRELCC, path], cwd=self.directory, stdin=subprocess.DEVNULL, capture_output=True,
            env={**native_build.environment(), "ASAN_OPTIONS": "detect_leaks=0"},
            timeout=TIMEOUT_SECONDS, check=False)
        self.assertEqual((compiled.returncode, compiled.stderr), (0, b""))
        self.assertFalse(native_build.is_by_other(path.with_suffix("")))
        return path.with_suffix("")

    def start(self, program, *arguments, limits=(), prepare=None, **options):
        """Starts a program, its standard error and unless told otherwise its output on pipes.

        Before it runs, soft limits are set, given as {resource: value}, and `prepare` is called.
        Further options are Popen's; with restore_signals=False the program starts with SIGPIPE and
        SIGXFSZ ignored, as Python itself does.
        """
        def set_up():
            for number, value in dict(limits).items():
                resource.setrlimit(number, (value, resource.getrlimit(number)[1]))
            if prepare:
                prepare()
        process = subprocess.Popen([program, *arguments], cwd=self.directory,
                                   stdin=subprocess.DEVNULL,
                                   stdout=options.pop("stdout", subprocess.PIPE),
                                   stderr=subprocess.PIPE, preexec_fn=set_up, **options)
        self.addCleanup(self.stop, process)
        return process

    def stop(self, process):
        """Ends a program that a failed test left running."""
        if process.poll() is None:
            process.kill()
        process.communicate()

    def finish(self, process):
        """Waits for a program; how it ended."""
        stdout, stderr = process.communicate(timeout=TIMEOUT_SECONDS)
        return Outcome(process.returncode, stdout, stderr)

    def run_program(self, program, *arguments, **options):
        """Runs a program to its end; how it ended."""
        return self.finish(self.start(program, *arguments, **options))

    def run_source(self, source, **options):
        """Compiles the text of a program and runs it to its end; how it ended."""
        return self.run_program(self.compile(source), **options)
