#!/usr/bin/env python3
"""Programs that show each fault of a checked run, and near misses that do not.

A file in faults/ has the name of a rule, and programs. A line before each says what has to come:

    #! 3:7 message      the rule, reported at this line and column of the program
    #! fine             no fault

A message may end early. A program without main is the inside of one, which begins in a line of its
own. KREL is beside the krelcc that the environment variable KRELCC names.
"""

import pathlib
import re
import subprocess
import sys
import unittest

HERE = pathlib.Path(__file__).resolve().parent
sys.path.append(str(HERE.parent / "krel"))

from sandbox import KREL  # noqa: E402 (after the path is known)

FAULTED = 134
SETTING = """\
int f() { return 1; }
void g() { }
void main() {
    int i = 1; int n = 2; double d = 0.5; boolean b = true; string s = "text";
    character c = 'c'; int a[3] = {10, 20, 30};
%s}
"""
RULES = ["deep-recursion", "division-by-zero", "division-overflow", "index-outside",
         "missing-result", "overflow", "unset-value", "wrong-type"]
# What ends a program in any case, and how.
SIGNALS = {"deep-recursion": -11, "division-by-zero": -8, "division-overflow": -8}


def programs(rule):
    """(line of the file, mark, program, line at which the program begins) of a file."""
    parts = re.split(r"(?m)^#! (.*)\n", (HERE / "faults" / f"{rule}.krl").read_text())
    line = 1
    for mark, text in zip(parts[1::2], parts[2::2]):
        if "void main(" in text:
            yield line, mark, text, 0
        else:
            yield line, mark, f"void main() {{\n{text}}}\n", 1
        line += 1 + text.count("\n")


def examples(page):
    """(section, program) of the examples of a page; fragments stand in a setting."""
    for section, text in re.findall(r"(?ms)^## (.*?)\n(.*?)(?=^## |\Z)", page):
        for flags, code in re.findall(r"(?ms)^```krel(.*?)\n(.*?)^```", text):
            yield section, SETTING % code if "fragment" in flags else code


def run(source, *options):
    return subprocess.run([KREL, "run", "--checked", *options, "-"], input=source.encode(),
                          capture_output=True, timeout=60, check=False)


def limited(words, source):
    """krel with 400 MB of addresses."""
    command = f"ulimit -v 400000; exec '{KREL}' {words}"
    return subprocess.run(["bash", "-c", command], input=source.encode(), capture_output=True,
                          timeout=60, check=False)


class Faults(unittest.TestCase):
    def check_fault(self, rule, mark, source, offset):
        place, message = mark.split(" ", 1)
        line, column = place.split(":")
        ran = run(source)
        self.assertEqual(ran.returncode, FAULTED, ran)
        first = ran.stderr.decode().splitlines()[0]
        self.assertTrue(first.endswith(f" [{rule}]"), first)
        self.assertTrue(first.startswith(
            f"stdin.krl:{int(line) + offset}:{column}: error: {message}"), first)
        self.check_allowed(rule, source)

    def check_allowed(self, rule, source):
        """With the rule allowed, it is not reported; what no program survives ends it."""
        ran = run(source, f"--allow={rule}")
        self.assertNotIn(f"[{rule}]".encode(), ran.stderr)
        if rule in SIGNALS:
            self.assertEqual(ran.returncode, SIGNALS[rule], ran)

    def check_fine(self, source):
        ran = run(source)
        self.assertEqual((ran.returncode, ran.stderr), (0, b""))

    def test_programs(self):
        for rule in RULES:
            marks = set()
            for number, mark, source, offset in programs(rule):
                marks.add(mark == "fine")
                with self.subTest(f"{rule}.krl:{number}"):
                    if mark == "fine":
                        self.check_fine(source)
                    else:
                        self.check_fault(rule, mark, source, offset)
            self.assertEqual(marks, {True, False}, f"{rule}: one sort of program only")

    def test_every_rule_has_programs(self):
        files = sorted(path.stem for path in (HERE / "faults").glob("*.krl"))
        self.assertEqual(files, RULES)

    def test_pages(self):
        """The example of each page shows its rule, and what is to be used instead does not."""
        for rule in RULES:
            page = subprocess.run([KREL, "explain", rule], capture_output=True, text=True,
                                  check=True).stdout
            found = list(examples(page))
            self.assertEqual([section for section, _ in found], ["Example", "Use instead"])
            for section, source in found:
                with self.subTest(f"{rule}, {section}"):
                    ran = run(source)
                    reported = f" [{rule}]\n".encode() in ran.stderr
                    self.assertEqual((ran.returncode, reported),
                                     (FAULTED, True) if section == "Example" else (0, False), ran)

    def test_exhausted_memory(self):
        """Under a limit of the address space; and the output is there."""
        source = ("void main() {\n    string s = \"0123456789\";\n    print(\"begin\\n\");\n"
                  "    while (true) { s = s + s; }\n}\n")
        if limited("--version", "").returncode != 0:
            self.skipTest("a sanitized program needs more addresses than the limit leaves")
        ran = limited("run --checked -", source)
        self.assertEqual((ran.returncode, ran.stdout), (FAULTED, b"begin\n"), ran.stderr)
        self.assertTrue(ran.stderr.startswith(
            b"stdin.krl:4:24: error: there is no memory left for strings [out-of-memory]\n"), ran)
        fine = run(source.replace("while (true)", "for (int i = 0; i < 15; i++)"))
        self.assertEqual((fine.returncode, fine.stderr), (0, b""))


if __name__ == "__main__":
    unittest.main()
