"""What the command-line tests share: a directory of their own, krelcc, and stand-ins for gcc.

The tests take krelcc's path from the environment variable KRELCC. They run by
    KRELCC=build/release/krelcc python3 tests/cli/test_usage.py
"""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

KRELCC = pathlib.Path(os.environ["KRELCC"]).resolve()
RUNTIME = KRELCC.parent / "codegen" / "runtime.o"
TIMEOUT_SECONDS = 120

PROGRAM = 'void main() {\n    print("hello");\n}\n'
SYNTAX_ERROR = "void main() {\n"
SEMANTIC_ERROR = "void main() {\n    int x = true;\n}\n"
# Accepted by every check, refused by the code generator.
GENERATOR_ERROR = "void main() {\n    int a[n];\n    int n = 3;\n    a[0] = 1;\n}\n"
GENERATOR_MESSAGE = "Compilation error: array has no positive compile-time size: a\n"

# The dumps of prog.krl, in the order in which they are written: options and messages.
FLAGS = {"prog.ast.json": "--ast-dump", "prog.semantic.json": "--ast-semantic-dump",
         "prog.ir": "--ir-dump", "prog.s": "--asm-dump"}
WRITTEN = {"prog.ast.json": 'AST written to "prog.ast.json".\n',
           "prog.semantic.json": 'AST written to "prog.semantic.json".\n',
           "prog.ir": 'KrelIR written to "prog.ir".\n',
           "prog.s": 'Assembly written to "prog.s".\n'}


class CommandLineTest(unittest.TestCase):
    """A test with a fresh working directory, `self.directory`, that holds prog.krl.

    It also holds a folder `bin`, which is the whole search path unless a test says otherwise.
    """

    maxDiff = None

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.directory = pathlib.Path(temporary.name).resolve()
        self.bin = self.directory / "bin"
        self.bin.mkdir()
        self.write("prog.krl", PROGRAM)

    def write(self, name, text):
        path = self.directory / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text.encode())
        return path

    def read(self, name):
        return (self.directory / name).read_text()

    def files(self):
        """The names of all files in the working directory, in order; none of its subfolders."""
        return sorted(path.name for path in self.directory.iterdir() if path.is_file())

    def install(self, directory):
        """Copies krelcc into a folder, without the runtime object; returns the copy."""
        directory.mkdir(parents=True, exist_ok=True)
        return pathlib.Path(shutil.copy(KRELCC, directory / "krelcc"))

    def stub(self, path, commands="exit 0"):
        """Writes a shell script in the place of a native compiler; the path is relative to bin/.

        It records how it was called in the file `called`: its name, then each argument, one a line.
        The search path may be anything, so its commands must be built into the shell or absolute.
        """
        script = self.bin / path
        script.parent.mkdir(parents=True, exist_ok=True)
        script.write_text("#!/bin/sh\n"
                          f"printf '%s\\n' \"$0\" \"$@\" >> '{self.directory}/called'\n"
                          f"{commands}\n")
        script.chmod(0o755)
        return script

    def called(self):
        """The words with which stubs were called; none when no stub ran."""
        path = self.directory / "called"
        return path.read_text().splitlines() if path.exists() else []

    def environment(self, changes):
        """The environment of krelcc: only bin/ is searched; None removes a variable."""
        environment = {**os.environ, "LC_ALL": "C", "PATH": str(self.bin),
                       "ASAN_OPTIONS": "detect_leaks=0", **changes}
        return {name: value for name, value in environment.items() if value is not None}

    def start(self, *arguments, program=KRELCC, name=None, cwd=None, **options):
        """Starts krelcc, or another program, under the given name (argv[0])."""
        environment = self.environment(options.pop("environment", {}))
        return subprocess.Popen([name or str(program), *map(str, arguments)],
                                executable=str(program), cwd=cwd or self.directory, env=environment,
                                stdin=options.pop("stdin", subprocess.DEVNULL),
                                stdout=options.pop("stdout", subprocess.PIPE),
                                stderr=options.pop("stderr", subprocess.PIPE), text=True,
                                errors="surrogateescape", **options)

    def krelcc(self, *arguments, **options):
        """Runs krelcc to its end; its status, standard output and standard error."""
        process = self.start(*arguments, **options)
        stdout, stderr = process.communicate(timeout=TIMEOUT_SECONDS)
        return process.returncode, stdout, stderr

    def compiled(self, source="prog.krl", output="prog"):
        return f'Compiled "{source}" to "{output}".\n'


ABORTED = -signal.SIGABRT
