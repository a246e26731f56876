#!/usr/bin/env python3
"""An installed krelcc: works from any directory, and wherever its prefix is moved to."""

import shutil
import subprocess
import unittest

from harness import CommandLineTest, KRELCC


class Install(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.prefix = self.directory / "prefix"
        subprocess.run(["cmake", "--install", KRELCC.parent, "--prefix", self.prefix],
                       check=True, capture_output=True)

    def assert_compiles(self, prefix):
        output = self.directory / "program"
        compiled = subprocess.run(
            [prefix / "bin" / "krelcc", self.directory / "prog.krl", "-o", output],
            cwd="/", capture_output=True, text=True, check=False)
        self.assertEqual((compiled.returncode, compiled.stderr), (0, ""))
        ran = subprocess.run([output], capture_output=True, text=True, check=False)
        self.assertEqual((ran.returncode, ran.stdout), (0, "hello"))

    def test_compiles_from_another_directory(self):
        self.assert_compiles(self.prefix)

    def test_compiles_after_its_prefix_was_moved(self):
        moved = self.directory / "moved" / "further"
        moved.parent.mkdir()
        shutil.move(self.prefix, moved)
        self.assert_compiles(moved)


if __name__ == "__main__":
    unittest.main()
