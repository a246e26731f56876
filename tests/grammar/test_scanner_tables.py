#!/usr/bin/env python3
"""The scanner never backs up: the generator says so, asked with the options of the build."""

import pathlib
import re
import subprocess
import tempfile
import unittest

LEXER = pathlib.Path(__file__).resolve().parents[2] / "lexer"


class ScannerTables(unittest.TestCase):
    def test_no_state_backs_up(self):
        build = (LEXER / "CMakeLists.txt").read_text()
        options = re.search(r'COMPILE_FLAGS "([^"]*)"', build).group(1).split()
        with tempfile.TemporaryDirectory() as directory:
            subprocess.run(["flex", *options, "-b", LEXER / "lexer.l"], cwd=directory, check=True)
            report = (pathlib.Path(directory) / "lex.backup").read_text()
        self.assertEqual(report, "No backing up.\n")


if __name__ == "__main__":
    unittest.main()
