#!/usr/bin/env python3
"""Whole programs as people write them who know other languages: what is found, what --fix makes of
them, and that the result prints what was meant.

A folder of programs/ has program.krl; expected.txt, the findings; fixed.krl; and output, which
comes from the same program in the language that it was written in."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[1] / "krel"))

from sandbox import KREL  # noqa: E402 (after the path is known)

PROGRAMS = pathlib.Path(__file__).resolve().parent / "programs"
FEWEST = 12


def krel(directory, *words):
    made = subprocess.run([KREL, *words], capture_output=True, text=True, cwd=directory,
                          check=False, timeout=100, env={**os.environ, "NO_COLOR": "1"})
    return made.returncode, made.stdout, made.stderr


class Programs(unittest.TestCase):
    maxDiff = None

    def test_programs(self):
        folders = sorted(path.parent for path in PROGRAMS.glob("*/program.krl"))
        self.assertGreaterEqual(len(folders), FEWEST)
        for folder in folders:
            with self.subTest(folder.name), tempfile.TemporaryDirectory() as directory:
                self.check(folder, pathlib.Path(directory))

    def check(self, folder, directory):
        def expected(name):
            return (folder / name).read_text(encoding="utf-8")
        path = directory / "program.krl"
        shutil.copy(folder / "program.krl", path)
        status, findings, fault = krel(directory, "check", "program.krl")
        self.assertEqual((findings, status, fault), (expected("expected.txt"), 1, ""))
        krel(directory, "check", "--fix", "program.krl")
        self.assertEqual(path.read_text(encoding="utf-8"), expected("fixed.krl"))
        self.assertNotIn(": error: ", krel(directory, "check", "program.krl")[1])
        self.assertEqual(krel(directory, "run", "program.krl"), (0, expected("output"), ""))


if __name__ == "__main__":
    unittest.main()
