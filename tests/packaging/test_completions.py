#!/usr/bin/env python3
"""Completions of krel and krelcc: what shells offer when somebody presses the tabulator."""

import tempfile
import unittest
from pathlib import Path

import commands
from shells import SHELLS

# What is typed, the words that must be offered, words that must not.
OFFERS = [
    ("krel ch", {"check"}, {"run"}),
    ("krel help ex", {"explain"}, {"run"}),
    ("krel explain comparison-", {"comparison-value"}, {"whole-double"}),
    ("krel run --native ", {"own", "system"}, {"hello.krl"}),
    ("krel build --native ", {"own", "system"}, {"hello.krl"}),
    ("krel check --format ", {"text", "json", "sarif"}, {"hello.krl"}),
    ("krel check --format s", {"sarif"}, {"text"}),
    ("krel check --color ", {"always", "never", "auto"}, {"hello.krl"}),
    ("krel run ", {"hello.krl"}, set()),
    ("krel run hello.krl ", {"hello.krl", "notes.txt"}, set()),
    ("krel build ", {"hello.krl"}, set()),
    ("krel check ", {"hello.krl"}, set()),
    ("krel fmt ", {"hello.krl"}, set()),
    ("krel build -o ", {"notes.txt"}, set()),
    ("krelcc ", {"hello.krl"}, set()),
    ("krelcc --as", {"--ast-dump", "--ast-semantic-dump", "--asm-dump"}, {"--ir-dump"}),
]


class Completions(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.directory = Path(place.name)
        for name in ("hello.krl", "notes.txt"):
            (self.directory / name).touch()

    def offers(self, shell, line):
        return SHELLS[shell](line, commands.KREL.parent, self.directory)

    def test_offers(self):
        for shell in SHELLS:
            for line, wanted, unwanted in OFFERS:
                with self.subTest(shell=shell, line=line):
                    offered = self.offers(shell, line)
                    self.assertLessEqual(wanted, offered)
                    self.assertFalse(unwanted & offered)

    def test_only_programs_are_offered_where_a_program_stands(self):
        for shell in ("bash", "zsh"):  # fish shows the other files, too, behind the programs
            for line in ("krel run ", "krel check ", "krel fmt ", "krelcc "):
                with self.subTest(shell=shell, line=line):
                    self.assertNotIn("notes.txt", self.offers(shell, line))

    def test_all_commands(self):
        for shell in SHELLS:
            with self.subTest(shell=shell):
                self.assertLessEqual(set(commands.names()), self.offers(shell, "krel "))

    def test_all_options(self):
        for shell in SHELLS:
            for name in commands.names():
                with self.subTest(shell=shell, command=name):
                    self.assertLessEqual(commands.long_options(name),
                                         self.offers(shell, f"krel {name} --"))

    def test_all_options_of_krelcc(self):
        for shell in SHELLS:
            with self.subTest(shell=shell):
                self.assertLessEqual(commands.long_options_of_krelcc(),
                                     self.offers(shell, "krelcc --"))


if __name__ == "__main__":
    unittest.main()
