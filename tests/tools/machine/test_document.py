#!/usr/bin/env python3
"""Plays the sessions in docs/checked-run.md: what follows a command there is what it prints.

A session is a block that begins with `$ `. The first `cat` of a file makes it: what is shown is its
text. Files stay for later sessions. Standard output and standard error come as a terminal has them.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent / "krel"))

from sandbox import KREL  # noqa: E402 (after the path is known)

DOCUMENT = HERE.parents[2] / "docs" / "checked-run.md"


def sessions(text):
    """(line, [(command, what it prints)]) of every session."""
    for block in re.finditer(r"(?ms)^```text\n(\$ .*?)^```$", text):
        parts = re.split(r"(?m)^\$ (.*)\n", block.group(1))
        yield text.count("\n", 0, block.start()) + 1, list(zip(parts[1::2], parts[2::2]))


class Document(unittest.TestCase):
    maxDiff = None

    def play(self, directory, commands):
        environment = {**os.environ, "PATH": f"{KREL.parent.resolve()}:{os.environ['PATH']}"}
        status = 0
        for command, expected in commands:
            words = command.split()
            if words[0] == "cat" and not (directory / words[1]).exists():
                (directory / words[1]).write_text(expected)
            elif command == "echo $?":
                self.assertEqual(f"{status}\n", expected)
            else:
                ran = subprocess.run(["bash", "-c", command], cwd=directory, timeout=60,
                                     env=environment, stdout=subprocess.PIPE,
                                     stderr=subprocess.STDOUT, check=False)
                self.assertEqual(ran.stdout.decode(), expected, command)
                status = ran.returncode

    def test_sessions(self):
        with tempfile.TemporaryDirectory() as name:
            played = 0
            for line, commands in sessions(DOCUMENT.read_text(encoding="utf-8")):
                with self.subTest(f"{DOCUMENT.name}:{line}"):
                    self.play(pathlib.Path(name), commands)
                played += 1
        self.assertGreater(played, 5)


if __name__ == "__main__":
    unittest.main()
