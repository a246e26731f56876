#!/usr/bin/env python3
"""Edits: after any of them the server knows the same text as one that has just been told.

The edits are random, and the same every time. EDITS and SEED in the environment ask for others:
    KRELCC=build/release/krelcc EDITS=100000 python3 tests/tools/lsp/test_edits.py Memory
"""

import os
import pathlib
import random
import unittest

from client import ABILITIES, Client, edited, range_of

EXAMPLES = pathlib.Path(__file__).resolve().parents[3] / "examples"
SEED = int(os.environ.get("SEED", "1"))
EDITS = int(os.environ.get("EDITS", "2000"))

# What is put into programs: pieces of them, characters of all widths, line ends of all kinds.
PIECES = ["x", "1", " ", "\n", "\r\n", "\r", ";", "}", "{", "(", ")", "\"", "'", "#", "#{", "}#",
          "int x = 1;", "if (x == 1) {\n}\n", "é", "漢", "😀", "# größe 😀\n", "\"é😀\"", "\t",
          "print(1, \"\\n\");", "double d = 2.0;", "/*", "//", "a[0]", "\0"]


def abilities(encoding):
    return {**ABILITIES, "general": {"positionEncodings": [encoding]}}


class Text:
    """A text that is edited at random, in step with a server.

    The lines of `range_of` end with line feeds only. So texts that are compared with the server's
    have no carriage returns.
    """

    def __init__(self, text, encoding, seed, pieces):
        self.text = text
        self.encoding = encoding
        self.random = random.Random(seed)
        self.pieces = pieces

    def change(self):
        """Changes the text and returns that as the protocol has it."""
        if self.random.random() < 0.02:
            self.text = self.text[:self.random.randrange(len(self.text) + 1)]
            return {"text": self.text}
        begin = self.random.randrange(len(self.text) + 1)
        end = min(begin + self.random.choice([0, 0, 1, 2, 30]), len(self.text))
        new = "".join(self.random.choices(self.pieces, k=self.random.randrange(3)))
        change = {"range": range_of(self.text, begin, end, self.encoding), "text": new}
        self.text = self.text[:begin] + new + self.text[end:]
        return change


class Edits(unittest.TestCase):
    def compare(self, path, encoding, seed, count):
        """Edits an example, and asks a second document with the same text for the same."""
        plain = [piece for piece in PIECES if "\r" not in piece]
        text = Text(path.read_text(encoding="utf-8"), encoding, seed, plain)
        with Client(abilities(encoding)) as client:
            client.open(text.text)
            for number in range(count):
                client.change([text.change() for _ in range(text.random.randrange(1, 5))])
                found = client.diagnostics()
                fresh = f"file:///fresh{number}.krl"
                client.open(text.text, fresh)
                self.assertEqual(found, client.diagnostics(fresh), (seed, number))
                for method in ("semanticTokens/full", "documentSymbol", "foldingRange",
                               "formatting"):
                    more = {"options": {}} if method == "formatting" else {}
                    self.assertEqual(client.ask(method, **more),
                                     client.ask(method, fresh, **more))
                client.notify("textDocument/didClose", {"textDocument": {"uri": fresh}})
            self.assertEqual(client.end(), 0)

    def test_incremental_edits(self):
        for number, path in enumerate(sorted(EXAMPLES.glob("*.krl"))):
            encoding = ("utf-16", "utf-8", "utf-32")[number % 3]
            with self.subTest(path=path.name, encoding=encoding):
                self.compare(path, encoding, SEED + number, 15)

    def test_edits_that_follow_each_other(self):
        """The ranges of later changes in a notification are those after the earlier ones."""
        with Client(abilities("utf-16")) as client:
            client.open("void main() {\n}\n")
            client.diagnostics()
            first = {"start": {"line": 1, "character": 0}, "end": {"line": 1, "character": 0}}
            second = {"start": {"line": 1, "character": 9}, "end": {"line": 1, "character": 8}}
            client.change([{"range": first, "text": "print(\"é😀\", x);\n"},
                           # The end is within a character, so it is that character's begin; and
                           # it comes before the start.
                           {"range": second, "text": "ü"}])
            client.open("void main() {\nprint(\"éü😀\", x);\n}\n", "file:///fresh.krl")
            found = client.diagnostics()
            self.assertEqual([each["code"] for each in found], ["undeclared-name"])
            self.assertEqual(found, client.diagnostics("file:///fresh.krl"))

    def test_line_ends(self):
        """For editors lines end with a line feed, a carriage return, or both."""
        for end in ("\n", "\r", "\r\n"):
            with self.subTest(end=end), Client(abilities("utf-16")) as client:
                client.open(f"void main() {{{end}}}{end}")
                client.diagnostics()
                at = {"line": 1, "character": 0}
                client.change([{"range": {"start": at, "end": at},
                                "text": "    int é1; int xyz;\n"}])
                found = [each for each in client.diagnostics() if "xyz" in each["message"]]
                self.assertEqual([each["range"] for each in found], [
                    {"start": {"line": 1, "character": 16}, "end": {"line": 1, "character": 19}}])
                client.change([{"range": {"start": {"line": 0, "character": 99},
                                          "end": {"line": 1, "character": 0}}, "text": "\n"}])
                symbols = client.ask("documentSymbol")
                self.assertEqual(symbols[0]["selectionRange"]["start"],
                                 {"line": 0, "character": 5})

    def test_random_bytes_of_all_kinds(self):
        """Nothing is compared here: the server has to stand it, and answer every request."""
        text = Text("void main() {\n}\n", "utf-16", SEED, PIECES)
        with Client(abilities("utf-16")) as client:
            client.open(text.text)
            for _ in range(150):
                client.change([text.change()])
                place = {"line": text.random.randrange(20), "character": text.random.randrange(60)}
                whole = {"start": {"line": 0, "character": 0}, "end": place}
                for method, more in (
                        ("hover", {"position": place}), ("completion", {"position": place}),
                        ("signatureHelp", {"position": place}),
                        ("documentHighlight", {"position": place}),
                        ("selectionRange", {"positions": [place]}),
                        ("onTypeFormatting", {"position": place, "ch": "\n", "options": {}}),
                        ("onTypeFormatting", {"position": place, "ch": "}", "options": {}}),
                        ("rangeFormatting", {"range": whole, "options": {}}),
                        ("inlayHint", {"range": whole}), ("semanticTokens/full", {}),
                        ("codeAction", {"range": whole, "context": {"diagnostics": []}})):
                    client.ask(method, **more)
            self.assertEqual(client.end(), 0)


class Formatting(unittest.TestCase):
    """Whole documents, ranges, and what has just been typed. krel fmt is tested elsewhere."""

    UGLY = ("void   main( ){\n  int x=1 ;   # größe 😀\n\n\n\n"
            "    if(x==1){print(\"a  b\\n\");}\n  x ++ ;\n}\n")
    NEAT = ("void main() {\n    int x = 1;    # größe 😀\n\n"
            "    if (x == 1) { print(\"a  b\\n\"); }\n    x++;\n}\n")

    def formatted(self, text, method="formatting", **parameters):
        with Client(abilities("utf-16")) as client:
            client.open(text)
            return edited(text, client.ask(method, options={}, **parameters), "utf-16")

    def on_type(self, text, character):
        """Asks for the layout at the mark "|" in a text."""
        at = text.index("|")
        text = text.replace("|", "")
        place = range_of(text, at, at, "utf-16")["start"]
        return self.formatted(text, "onTypeFormatting", position=place, ch=character)

    def test_document(self):
        self.assertEqual(self.formatted(self.UGLY), self.NEAT)
        self.assertEqual(self.formatted(self.NEAT), self.NEAT)

    def test_program_that_does_not_parse(self):
        self.assertEqual(self.formatted("void main( ) { int }\n"), "void main( ) { int }\n")

    def test_range(self):
        line = {"start": {"line": 6, "character": 3}, "end": {"line": 6, "character": 4}}
        self.assertEqual(self.formatted(self.UGLY, "rangeFormatting", range=line),
                         self.UGLY.replace("\n  x ++ ;\n", "\n    x++;\n"))

    def test_statement_that_was_finished(self):
        self.assertEqual(self.on_type("void main( ) {\n  int   x=1;|\n}\n", ";"),
                         "void main( ) {\n    int x = 1;\n}\n")

    def test_block_that_was_finished(self):
        self.assertEqual(
            self.on_type("void main( ) {\nif (1==1) {\nprint(1);\n  }|\n}\n", "}"),
            "void main( ) {\n    if (1 == 1) {\n        print(1);\n    }\n}\n")

    def test_semicolon_in_a_text(self):
        text = "void main( ) {\n  print( \"a;|b\" );  # x;\n}\n"
        self.assertEqual(self.on_type(text, ";"), text.replace("|", ""))

    def test_new_line(self):
        self.assertEqual(self.on_type("void main() {\n    if (x {\n|\n", "\n"),
                         "void main() {\n    if (x {\n        \n")
        self.assertEqual(self.on_type("void main() {\n    if (1) {\n|}\n}\n", "\n"),
                         "void main() {\n    if (1) {\n    }\n}\n")
        self.assertEqual(self.on_type("#{ a\n|b }#\n", "\n"), "#{ a\nb }#\n")


class Memory(unittest.TestCase):
    def test_many_edits_leave_nothing_behind(self):
        """Lets the server settle in a tenth of the edits, and looks what the others have added."""
        text = Text((EXAMPLES / "primes.krl").read_text(encoding="utf-8"), "utf-16", SEED, PIECES)
        begin = text.text
        # AddressSanitizer would keep what is given back.
        keep_nothing = {"ASAN_OPTIONS": "quarantine_size_mb=0:thread_local_quarantine_size_kb=0"}
        with Client(abilities("utf-16"), keep_nothing) as client:
            client.open(begin)
            settled = 0
            for number in range(EDITS):
                if number % 50 == 0:
                    text.text = begin
                    client.change([{"text": begin}])
                    client.diagnostics()
                if number == EDITS // 10:
                    settled = resident(client.process.pid)
                client.change([text.change()])
                client.diagnostics()
            grown = resident(client.process.pid) - settled
            self.assertLess(grown, 4096, f"from {settled} kB, after {EDITS} edits")
            print(f"{EDITS} edits: {settled} kB and {grown} kB more")


def resident(pid):
    """The memory that a process has, in kB."""
    with open(f"/proc/{pid}/status", encoding="ascii") as file:
        for line in file:
            if line.startswith("VmRSS:"):
                return int(line.split()[1])
    raise ValueError("the process has gone")


if __name__ == "__main__":
    unittest.main()
