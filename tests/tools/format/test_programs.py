#!/usr/bin/env python3
"""The examples, and the programs in the documents, have the style of `krel fmt`."""

import pathlib
import subprocess
import sys
import textwrap
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.path[:0] = [str(ROOT / "tests" / "tools" / "krel"), str(ROOT / "tests" / "examples")]

from run_document import fenced_blocks  # noqa: E402 (after the path is known)
from sandbox import KREL  # noqa: E402


def formatted(program):
    return subprocess.run([KREL, "fmt", "-"], input=program, stdout=subprocess.PIPE, text=True,
                          check=True).stdout


class Programs(unittest.TestCase):
    maxDiff = None

    def test_examples(self):
        result = subprocess.run([KREL, "fmt", "--check", ROOT / "examples"], capture_output=True,
                                text=True, check=False)
        self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
        self.assertGreaterEqual(len(list(ROOT.glob("examples/*.krl"))), 20)

    def test_documents(self):
        blocks = 0
        for path in sorted([*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")]):
            lines = path.read_text(encoding="utf-8").splitlines()
            for number, mark, text in fenced_blocks(lines):
                text = textwrap.dedent(text)
                if mark == "krel fragment":  # statements
                    text = "void main() {\n" + textwrap.indent(text, "    ") + "}\n"
                elif mark != "krel":
                    continue
                blocks += 1
                with self.subTest(document=path.name, line=number):
                    self.assertEqual(text, formatted(text))
        self.assertGreater(blocks, 20)


if __name__ == "__main__":
    unittest.main()
