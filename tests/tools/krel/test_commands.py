#!/usr/bin/env python3
"""What krel says of itself, and what it does not understand."""

import re
import unittest

from sandbox import KREL, KrelTest

COMMANDS = ("run", "build", "fmt", "help")


class Commands(KrelTest):
    def assert_helps(self, *words, mentions):
        status, stdout, stderr = self.krel(*words)
        self.assertEqual((status, stderr), (0, ""))
        for text in mentions:
            self.assertIn(text, stdout)
        self.assertLess(max(map(len, stdout.splitlines())), 100)
        return stdout

    def test_help_has_examples_before_the_list_of_commands(self):
        for words in (("--help",), ("-h",), ("help",)):
            with self.subTest(words=words):
                text = self.assert_helps(*words, mentions=COMMANDS)
                self.assertLess(text.index("Examples:"), text.index("Commands:"))
                for name in COMMANDS:
                    self.assertRegex(text, rf"(?m)^  {name} +[A-Z]")

    def test_help_on_a_command(self):
        for name, option in (("run", "--native"), ("build", "-o OUTPUT"),
                             ("fmt", "--check"), ("help", "--help")):
            for words in (("help", name), (name, "--help"), (name, "-h")):
                with self.subTest(words=words):
                    text = self.assert_helps(*words, mentions=[f"Usage: krel {name}", option])
                    examples = text[text.index("Examples:"):text.index("Usage:")].splitlines()[1:]
                    for example in filter(None, examples):
                        self.assertTrue(example.startswith(f"  krel {name} "), example)
                    self.assertLess(text.index("Examples:"), text.index("Usage:"))

    def test_version_is_that_of_the_project(self):
        cache = (KREL.parent / "CMakeCache.txt").read_text()
        version = re.search(r"(?m)^CMAKE_PROJECT_VERSION:\w+=(.+)$", cache)[1]
        self.assertEqual(self.krel("--version"), (0, f"krel {version}\n", ""))

    def test_no_command(self):
        status, stdout, stderr = self.krel()
        self.assertEqual((status, stdout), (2, ""))
        self.assertTrue(stderr.startswith("krel: a command is missing\n"), stderr)
        self.assertTrue(stderr.endswith(self.krel("--help")[1]), stderr)

    def test_wrong_use(self):
        hints = {("nosuch",): ("'nosuch'", "krel --help"),
                 ("",): ("''", "krel --help"),
                 ("--native=own", "run", "prog.krl"): ("'--native=own'", "krel --help"),
                 ("help", "nosuch"): ("'nosuch'", "krel --help"),
                 ("help", "run", "build"): ("'build'", "krel help help"),
                 ("run",): ("PROGRAM.krl is missing", "krel help run"),
                 ("run", "--"): ("PROGRAM.krl is missing", "krel help run"),
                 ("run", "--nosuch", "prog.krl"): ("'--nosuch'", "krel help run"),
                 ("run", "-x", "prog.krl"): ("'-x'", "krel help run"),
                 ("run", "-o", "out", "prog.krl"): ("'-o'", "krel help run"),
                 ("run", "--native=other", "prog.krl"): ("other", "krel help run"),
                 ("run", "--native"): ("--native", "krel help run"),
                 ("build",): ("PROGRAM.krl", "krel help build"),
                 ("build", "prog.krl", "--nosuch"): ("'--nosuch'", "krel help build"),
                 ("build", "prog.krl", "other.krl"): ("'other.krl'", "krel help build"),
                 ("build", "prog.krl", "-o"): ("-o", "krel help build"),
                 ("build", "prog.krl", "-o", "a", "-o", "b"): ("-o", "krel help build"),
                 ("build", "-"): ("standard input", "krel help run")}
        for words, parts in hints.items():
            with self.subTest(words=words):
                self.assert_complains(self.krel(*words), 2, *parts)
        self.assertEqual(self.files(), ["prog.krl"])

    def test_help_that_cannot_be_written(self):
        for words in (("--help",), ("--version",), ("help", "run")):
            with self.subTest(words=words), open("/dev/full", "w", encoding="ascii") as full:
                status, _, stderr = self.krel(*words, stdout=full)
                self.assertEqual((status, stderr), (1, "krel: cannot write to standard output: "
                                                       "No space left on device\n"))


if __name__ == "__main__":
    unittest.main()
