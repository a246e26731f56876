#!/usr/bin/env python3
"""A runtime that collects at every allocation changes nothing that a program prints.

What it collects it overwrites, so a string that is taken back while the program still holds it
comes out as another text. Run are the examples and all cases that have an expected output.
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

COLLECTING = OBJECTS / "collecting.o"


class Collector(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        """Installs a copy of krelcc beside the other runtime, which is then the first it finds."""
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        directory = pathlib.Path(temporary.name)
        cls.krelcc = shutil.copy(KRELCC, directory / "krelcc")
        (directory / "codegen").mkdir()
        shutil.copy(COLLECTING, directory / "codegen" / "runtime.o")

    def assert_all_pass(self, programs, run):
        self.assertGreater(len(programs), 0)
        for program in programs:
            with self.subTest(program.name):
                self.assertEqual("".join(run(program)), "")

    def test_runtime_is_another_one(self):
        self.assertNotEqual(COLLECTING.read_bytes(), RUNTIME.read_bytes())

    def test_examples(self):
        self.assert_all_pass(sorted((SOURCES / "examples").glob("*.krl")),
                             lambda example: run_example(str(self.krelcc), example))

    def test_cases(self):
        cases = sorted(output.parent for output in
                       (SOURCES / "tests" / "cases").glob("*/*/expected.run"))
        self.assert_all_pass(cases, lambda case: run_case(str(self.krelcc), case, update=False))


if __name__ == "__main__":
    unittest.main()
