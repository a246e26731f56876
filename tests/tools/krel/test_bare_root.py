#!/usr/bin/env python3
"""krel where there is nothing but the installed files: no C compiler, no shell, no /dev, no /proc.

The installation goes into a folder that then is the root directory of what runs. That takes a user
who may do this, an installation without dynamic libraries, and a native compiler of our own in it.
"""

import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile
import unittest

from sandbox import KREL, OWN_NATIVE, TIMEOUT_SECONDS
from harness import PROGRAM, SEMANTIC_ERROR

EXAMPLES = pathlib.Path(__file__).resolve().parents[3] / "examples"
NAMESPACE = ["unshare", "--user", "--map-root-user"]


def reason_to_skip():
    cache = (KREL.parent / "CMakeCache.txt").read_text()
    if re.search(r"(?m)^KREL_(SANITIZE|COVERAGE):BOOL=ON$", cache):
        return "this build needs dynamic libraries"
    if not OWN_NATIVE.exists():
        return f"there is no {OWN_NATIVE}"
    if subprocess.run([*NAMESPACE, "chroot", "/", "true"], capture_output=True,
                      check=False).returncode != 0:
        return "the root directory cannot be changed here"
    return None


class BareRoot(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if reason := reason_to_skip():
            raise unittest.SkipTest(reason)
        installed = tempfile.TemporaryDirectory()
        cls.addClassCleanup(installed.cleanup)
        cls.installed = pathlib.Path(installed.name)
        subprocess.run(["cmake", "--install", KREL.parent, "--prefix", "/usr"], check=True,
                       env={**os.environ, "DESTDIR": installed.name}, capture_output=True)

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.root = pathlib.Path(temporary.name, "root")
        shutil.copytree(self.installed, self.root, symlinks=True)
        (self.root / "tmp").mkdir()
        self.write("prog.krl", PROGRAM)

    def tearDown(self):
        self.assertEqual([path.name for path in self.root.glob("tmp/*")], [])

    def write(self, name, text):
        (self.root / name).write_text(text)

    def run_in_root(self, *words, text=""):
        result = subprocess.run([*NAMESPACE, "chroot", self.root, *words], input=text,
                                env={"PATH": f"{os.environ['PATH']}:/usr/bin"}, text=True,
                                capture_output=True, timeout=TIMEOUT_SECONDS, check=False)
        return result.returncode, result.stdout, result.stderr

    def test_nothing_but_the_installation_is_there(self):
        self.assertEqual(sorted(path.name for path in self.root.iterdir()),
                         ["prog.krl", "tmp", "usr"])
        self.assertEqual(sorted(path.name for path in self.root.glob("usr/bin/*")),
                         ["krel", "krelcc"])
        self.assertEqual(self.run_in_root("/bin/sh", "-c", ":")[0], 127)

    def test_runs_a_program(self):
        for krel in ("/usr/bin/krel", "krel"):
            with self.subTest(krel=krel):
                self.assertEqual(self.run_in_root(krel, "run", "prog.krl"), (0, "hello", ""))

    def test_runs_a_program_on_standard_input(self):
        self.assertEqual(self.run_in_root("krel", "run", "-", text=PROGRAM), (0, "hello", ""))

    def test_runs_the_examples(self):
        for example in sorted(EXAMPLES.glob("*.krl")):
            with self.subTest(example=example.name):
                expected = (EXAMPLES / "expected" / f"{example.stem}.out").read_text()
                self.assertEqual(self.run_in_root("krel", "run", "-", text=example.read_text()),
                                 (0, expected, ""))

    def test_builds_a_program(self):
        self.assertEqual(self.run_in_root("krel", "build", "prog.krl", "-o", "/hi"),
                         (0, 'Compiled "prog.krl" to "/hi".\n', ""))
        self.assertEqual(self.run_in_root("/hi"), (0, "hello", ""))

    def test_faults_of_programs(self):
        self.write("bad.krl", SEMANTIC_ERROR)
        self.assertEqual(self.run_in_root("krel", "run", "bad.krl"),
                         (1, "", "Semantic error in bad.krl at line 2: Cannot assign value of type "
                                 "'boolean' to type 'int'.\n"))
        self.write("zero.krl", "void main() {\n    int zero = 0;\n    print(1 / zero);\n}\n")
        status, stdout, stderr = self.run_in_root("krel", "run", "zero.krl")
        self.assertEqual((status, stdout), (-signal.SIGFPE, ""))
        self.assertRegex(stderr, r"\A[^\n]+\n\Z")

    def test_no_place_for_temporary_files(self):
        (self.root / "tmp").rmdir()
        status, stdout, stderr = self.run_in_root("krel", "run", "prog.krl")
        self.assertEqual((status, stdout), (1, ""))
        self.assertRegex(stderr, r"\Akrel: cannot make a temporary directory in /tmp [^\n]+\n\Z")

    def test_nothing_else_to_build_with(self):
        self.assertEqual(self.run_in_root("krel", "run", "--native=system", "prog.krl"),
                         (1, "", "No native compiler found (install gcc or clang).\n"))


if __name__ == "__main__":
    unittest.main()
