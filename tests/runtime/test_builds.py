#!/usr/bin/env python3
"""Other builds of the runtime change nothing that a program prints.

One collects at every allocation and overwrites what it takes back, so that a string that the
program still holds comes out as another text. One is made by clang++, one by g++. Run are the
examples and, with the first, all cases that have an expected output.
"""

import pathlib
import shutil
import sys
import tempfile
import unittest

from harness import KRELCC, OBJECTS, RUNTIME, SOURCES

sys.path += [str(SOURCES / "tests"), str(SOURCES / "tests" / "examples")]
from run_case import run_case  # noqa: E402
from run_example import run_example  # noqa: E402


class Other(unittest.TestCase):
    object = None

    @classmethod
    def setUpClass(cls):
        """Installs a copy of krelcc beside the other runtime, which is then the first it finds."""
        if not cls.object.exists():
            raise unittest.SkipTest(f"{cls.object.name} has not been made")
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        directory = pathlib.Path(temporary.name)
        cls.krelcc = shutil.copy(KRELCC, directory / "krelcc")
        (directory / "codegen").mkdir()
        shutil.copy(cls.object, directory / "codegen" / "runtime.o")

    def assert_all_pass(self, programs, run):
        self.assertGreater(len(programs), 0)
        for program in programs:
            with self.subTest(program.name):
                self.assertEqual("".join(run(program)), "")

    def assert_examples_pass(self):
        self.assert_all_pass(sorted((SOURCES / "examples").glob("*.krl")),
                             lambda example: run_example(str(self.krelcc), example))


class Collecting(Other):
    object = OBJECTS / "collecting.o"

    def test_runtime_is_another_one(self):
        self.assertNotEqual(self.object.read_bytes(), RUNTIME.read_bytes())

    def test_examples(self):
        self.assert_examples_pass()

    def test_cases(self):
        cases = sorted(output.parent for output in
                       (SOURCES / "tests" / "cases").glob("*/*/expected.run"))
        self.assert_all_pass(cases, lambda case: run_case(str(self.krelcc), case, update=False))


class MadeByClang(Other):
    object = OBJECTS / "by-clang++.o"

    def test_examples(self):
        self.assert_examples_pass()


class MadeByGcc(Other):
    object = OBJECTS / "by-g++.o"

    def test_examples(self):
        self.assert_examples_pass()


if __name__ == "__main__":
    unittest.main()
