#!/usr/bin/env python3
"""Compiles what a document says about Krel programs, so that the documents stay true.

Checked in a Markdown file are

- fenced blocks marked `krel`: a whole program, which has to compile. A block marked `text output`
  after it is what the program prints; `text errors` instead is what krelcc says when it refuses
  the program, which is called program.krl.
- fenced blocks marked `krel fragment`: statements, which have to compile in the setting below.
- tables with a column `You write`, whose code is compiled in the setting below. `krelcc says`
  holds all the lines that krelcc writes to standard error, without file and line, and no code
  where it compiles the program; `It prints` what the compiled code prints; the code in
  `Write instead` has to compile. A cell with several pieces of code under `You write` or
  `Write instead` gives alternatives.
- tables with the columns `Message` and `Section`: an index in alphabetical order, in which every
  line under `krelcc says` in the same document has to be found. `...` stands for any text there.

The setting is SETTING: a statement stands at the end of its `main`, a function beside it, a
program with a `main` of its own alone. Where the cell says "outside a function", a statement
stands before the functions.

Usage: run_document.py --krelcc PATH DOCUMENT...
"""

import argparse
import pathlib
import re
import sys
import tempfile

from run_example import run

SETTING = """\
int f() { return 1; }
void g() { }
%s
void main() {
    int i = 1; int n = 2; double d = 0.5; boolean b = true; string s = "text"; character c = 'c';
    int a[3] = {10, 20, 30};
%s
}
"""
TYPE = r"(?:int|double|boolean|character|string|void)"


class Program:
    """A program, compiled: what krelcc said and, if it was accepted, what the program printed."""

    def __init__(self, krelcc, source, execute=False):
        with tempfile.TemporaryDirectory() as name:
            directory = pathlib.Path(name)
            (directory / "program.krl").write_text(source, encoding="utf-8", newline="")
            compiled = run([krelcc, "program.krl"], directory)
            self.compiled = compiled.returncode == 0
            self.errors = compiled.stderr.decode(errors="backslashreplace")
            self.output = None
            if self.compiled and execute:
                ran = run([str(directory / "program")], directory)
                self.output = ran.stdout.decode(errors="backslashreplace")

    def sayings(self):
        """The lines of standard error without their " in program.krl at line N"."""
        return [re.sub(r"^(\w+ error) in program\.krl at line \d+", r"\1", line)
                for line in self.errors.splitlines()]


def in_setting(code, outside=False):
    """A whole program around a piece of code."""
    if re.search(r"\bmain\(.*\{", code):
        return code + "\n"
    if outside:
        return code + "\n" + SETTING % ("", "")
    if re.match(TYPE + r" \w+\(.*\{", code):
        return SETTING % (code, "")
    return SETTING % ("", code)


def code_spans(cell):
    return [code.replace("\\|", "|") for code in re.findall(r"`([^`]+)`", cell)]


def cells(row):
    return [cell.strip() for cell in re.split(r"(?<!\\)\|", row.strip())[1:-1]]


def fenced_blocks(lines):
    """Gives (line number, what the fence is marked with, text) of every fenced block."""
    start = None
    for number, line in enumerate(lines, 1):
        if not line.lstrip().startswith("```"):
            continue
        if start is None:
            start, mark = number, line.strip()[3:].strip()
        else:
            yield start, mark, "".join(text + "\n" for text in lines[start:number - 1])
            start = None


def table_rows(lines):
    """Gives (line number, {heading: cell}) of every row of every table."""
    headings = None
    for number, line in enumerate(lines, 1):
        if not line.startswith("|"):
            headings = None
        elif headings is None:
            headings = cells(line)
        elif not re.fullmatch(r"[|\s:-]+", line):
            yield number, dict(zip(headings, cells(line)))


def check_blocks(krelcc, lines):
    blocks = list(fenced_blocks(lines))
    for (number, mark, text), following in zip(blocks, [*blocks[1:], (0, "", "")]):
        if mark == "krel fragment":
            program = Program(krelcc, in_setting(text))
            if not program.compiled:
                yield number, f"does not compile: {program.errors}"
        if mark != "krel":
            continue
        program = Program(krelcc, text, execute=following[1] == "text output")
        if following[1] == "text errors":
            if program.compiled or program.errors != following[2]:
                yield number, f"krelcc says: {program.errors}"
        elif not program.compiled:
            yield number, f"does not compile: {program.errors}"
        elif following[1] == "text output" and program.output != following[2]:
            yield number, f"prints: {program.output}"


def check_row(krelcc, row):
    outside = "outside a function" in row["You write"]
    for code in code_spans(row["You write"]):
        source = in_setting(code, outside)
        if "krelcc says" in row:
            program = Program(krelcc, source)
            expected = code_spans(row["krelcc says"])
            if program.compiled != (not expected) or program.sayings() != expected:
                yield f"`{code}`: krelcc says {program.sayings()}"
        elif "It prints" in row:
            program = Program(krelcc, source, execute=True)
            if program.output is None or [program.output.strip()] != code_spans(row["It prints"]):
                yield f"`{code}`: prints {program.output!r} {program.errors}"
    for code in code_spans(row.get("Write instead", "")):
        program = Program(krelcc, in_setting(code))
        if not program.compiled:
            yield f"`{code}` does not compile: {program.errors}"


def check_index(rows):
    """Holds the index of a document, if it has one, against its tables of messages."""
    index = [(number, message) for number, row in rows if "Message" in row and "Section" in row
             for message in code_spans(row["Message"])]
    for (number, message), (_, following) in zip(index, index[1:]):
        if message.lower() > following.lower():
            yield number, f"`{message}` stands before `{following}`"
    patterns = [re.escape(message).replace(r"\.\.\.", ".*") for _, message in index]
    for number, row in rows:
        for saying in code_spans(row.get("krelcc says", "")) if index else ():
            message = re.sub(r"^\w+ error: ", "", saying)
            if not any(re.fullmatch(pattern, message) for pattern in patterns):
                yield number, f"`{message}` is not in the index"


def check_document(krelcc, path):
    """Gives (line number, what is wrong there) for everything that is not as the document says."""
    lines = path.read_text(encoding="utf-8").splitlines()
    rows = list(table_rows(lines))
    yield from check_blocks(krelcc, lines)
    yield from check_index(rows)
    for number, row in rows:
        if "You write" in row:
            for fault in check_row(krelcc, row):
                yield number, fault


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--krelcc", required=True, type=pathlib.Path)
    parser.add_argument("documents", nargs="+", type=pathlib.Path, metavar="DOCUMENT")
    options = parser.parse_args()
    failed = False
    for path in options.documents:
        for number, fault in check_document(str(options.krelcc.resolve()), path):
            print(f"{path}:{number}: {fault}")
            failed = True
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
