#!/usr/bin/env python3
"""Plays the sessions in docs/debugging.md: what follows a command there is what it answers.

A session is a block that begins with `$ `. `cat` makes a file of what is shown. What stands behind
the prompts of `krel debug --tty` is what it gets to read.
"""

import pathlib
import re
import subprocess
import tempfile
import unittest

from client import KREL, TIMEOUT_SECONDS

DOCUMENT = pathlib.Path(__file__).resolve().parents[3] / "docs" / "debugging.md"
BLOCK = re.compile(r"(?ms)^```text\n\$ (.*?)\n(.*?)^```$")


class Document(unittest.TestCase):
    maxDiff = None

    def test_sessions(self):
        text = DOCUMENT.read_text(encoding="utf-8")
        played = 0
        with tempfile.TemporaryDirectory() as directory:
            for block in BLOCK.finditer(text):
                words, shown = block.group(1).split(), block.group(2)
                if words[0] == "cat":
                    (pathlib.Path(directory) / words[1]).write_text(shown, encoding="utf-8")
                    continue
                self.assertEqual(words[:3], ["krel", "debug", "--tty"])
                lines = "".join(line + "\n" for line in re.findall(r"(?m)^\(krel\) (.*)$", shown))
                with self.subTest(line=text.count("\n", 0, block.start()) + 1):
                    ran = subprocess.run([KREL, *words[1:]], input=lines.encode(), cwd=directory,
                                         timeout=TIMEOUT_SECONDS, stdout=subprocess.PIPE,
                                         stderr=subprocess.STDOUT, check=True)
                    self.assertEqual(ran.stdout.decode(), shown)
                played += 1
        self.assertEqual(played, 5)


if __name__ == "__main__":
    unittest.main()
