#!/usr/bin/env python3
"""What script/check_text.py finds in text files, and what it lets pass."""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CHECK = pathlib.Path(__file__).resolve().parents[2] / "script" / "check_text.py"


class TextTest(unittest.TestCase):
    def check(self, path, content):
        """The status of a check of one file with this content, and the findings after its name."""
        with tempfile.TemporaryDirectory() as name:
            file = pathlib.Path(name, path)
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(content)
            result = subprocess.run([sys.executable, CHECK, path], cwd=name, capture_output=True,
                                    text=True, timeout=60, check=False)
        self.assertEqual(result.stderr, "")
        findings = result.stdout.splitlines()
        self.assertTrue(all(finding.startswith(f"{path}:") for finding in findings), findings)
        return result.returncode, [finding[len(path) + 1:] for finding in findings]

    def assert_clean(self, path, content):
        self.assertEqual(self.check(path, content), (0, []))

    def assert_finds(self, path, content, *findings):
        self.assertEqual(self.check(path, content), (1, list(findings)))

    def test_clean_files(self):
        self.assert_clean("empty", b"")
        self.assert_clean("notes", b"one\n\n  two\n")

    def test_tab(self):
        self.assert_finds("notes", b"one\na\tb\n", "2: tab")

    def test_tab_where_it_has_a_meaning(self):
        for path in ("some/Makefile", "rules.mk", "man/page.1.scd"):
            self.assert_clean(path, b"\tsome\n")

    def test_carriage_return(self):
        self.assert_finds("notes", b"one\r\ntwo\n", "1: carriage return")
        self.assert_finds("notes", b"one\rtwo\n", "1: carriage return")

    def test_trailing_blank(self):
        self.assert_finds("notes", b"one\ntwo \n", "2: trailing blank")
        self.assert_finds("notes", b"one\n \n", "2: trailing blank")
        self.assert_finds("notes", b"one\t\n", "1: tab", "1: trailing blank")
        self.assert_finds("notes", b"one \r\n", "1: carriage return", "1: trailing blank")
        self.assert_finds("notes", b"one ", "1: no line end", "1: trailing blank")

    def test_missing_line_end(self):
        self.assert_finds("notes", b"one\ntwo", "2: no line end")

    def test_findings_in_order(self):
        self.assert_finds("script/some", b"#" * 101 + b"\none \n" + b"#" * 101 + b"\n",
                          "1: more than 100 characters", "2: trailing blank",
                          "3: more than 100 characters")

    def test_length(self):
        for path, limit in (("parser/parser.y", 100), ("lexer/lexer.l", 100), ("script/some", 100),
                            (".ci/run", 100), ("README.md", 120), ("docs/some.md", 120)):
            with self.subTest(path=path):
                self.assert_clean(path, b"x" * limit + b"\n")
                self.assert_finds(path, b"x\n" + b"x" * (limit + 1) + b"\n",
                                  f"2: more than {limit} characters")

    def test_length_without_limit(self):
        self.assert_clean("notes", b"x" * 1000 + b"\n")

    def test_length_in_characters(self):
        self.assert_clean("README.md", "\u00e9".encode() * 120 + b"\n")
        self.assert_clean("README.md", b"\xe9" * 120 + b"\n")

    def test_markdown_that_cannot_be_broken(self):
        long = b"x " * 80 + b"x\n"
        self.assert_clean("README.md", b"| " + long)
        self.assert_clean("README.md", b"    " + long)
        self.assert_clean("README.md", b"```\n" + long + b"```\n")
        self.assert_clean("README.md", b"- Indented:\n\n  ```krel\n  " + long + b"  ```\n")
        self.assert_clean("README.md", b"[here](" + b"x" * 200 + b")\n")
        self.assert_clean("README.md", b"[here]: " + b"x" * 200 + b"\n")

    def test_markdown_beside_what_cannot_be_broken(self):
        long = b"x " * 80 + b"x\n"
        finding = "more than 120 characters"
        self.assert_finds("README.md", b"```\n```\n" + long, f"3: {finding}")
        self.assert_finds("README.md", b"[here](there) " + long, f"1: {finding}")
        self.assert_finds("README.md", b"- " + long, f"1: {finding}")

    def test_markdown_code_is_checked_for_the_rest(self):
        self.assert_finds("README.md", b"```\none \n```\n", "2: trailing blank")

    def test_inputs_and_outputs_of_tests(self):
        odd = b"one \r\n\ttwo"
        for path in ("tests/cases/lexer/some/input.krl", "tests/cases/lexer/some/expected.stdout",
                     "tests/cases/lexer/some/args", "examples/expected/some.out"):
            with self.subTest(path=path):
                self.assert_clean(path, odd)
        self.assert_finds("tests/cases/lexer/some/input.py", b"one \n", "1: trailing blank")
        self.assert_finds("examples/some.krl", b"one \n", "1: trailing blank")


if __name__ == "__main__":
    unittest.main()
