#!/usr/bin/env python3
"""Holds the scanner against its rules, tried one by one, on random texts.

The texts are made of what the scanner has to tell apart: quotes, escapes, comment marks, braces,
line ends, operators that begin alike, numbers, words. Compared are the illegal characters and the
syntax error that ends the parse, in the order in which they are reported, with their lines.
"""

import pathlib
import random
import unittest

from automaton import END, Automaton, message
from diagnostics import SOURCE, diagnostics, syntax_error
from scanner import ILLEGAL, SKIPPED, Token, scan

GRAMMAR = pathlib.Path(__file__).resolve().parents[2] / "parser" / "parser.y"
TEXTS = 1000
SEED = 20240229

# Pieces that leave the parse going, so that what follows them is scanned as well, come more often.
QUOTES_AND_COMMENTS = ["#", "#{", "}#", "}", "{", "\n", "\n", "\\", '"', "'", "@", " ", "a"]
WHOLE = ['x = "a";\n', "f('b');\n", "{", "}", "x++;", "\n", " ", "# c\n", "#{\n}#", "y = 1.5;",
         "@", "\xe9", "\r", "\0"]
PIECES = ["+", "-", "=", "<", ">", "!", "&", "|", "1", "0", ".", "x", "if", "else", "int", "_", '"',
          "'", "\\", "#", "{", "}", "(", ")", "[", "]", ";", ",", "\n", "\t", "\x7f", "\xff"]


def random_text(generator):
    pieces = generator.choice([QUOTES_AND_COMMENTS, WHOLE, WHOLE + QUOTES_AND_COMMENTS,
                               WHOLE + PIECES])
    return "".join(generator.choice(pieces) for _ in range(generator.randint(1, 60)))


def expected_lines(automaton, source):
    matches = scan(source)
    tokens = [match for match in matches if match.kind not in (SKIPPED, ILLEGAL)]
    tokens.append(Token(END, "", matches[-1].line if matches else 1))
    trace = automaton.simulate([token.kind for token in tokens])
    wrong = tokens[trace.position] if trace.failed else None
    lines = []
    for match in matches:
        if match is wrong:
            break
        if match.kind == ILLEGAL:
            lines.append(f"Lexer error in {SOURCE} at line {match.line}: "
                         f"illegal character '{match.text}'")
    if wrong:
        lines.append(syntax_error(wrong.line, message(wrong.kind, trace.expected)))
    return lines


class Scanner(unittest.TestCase):
    maxDiff = None

    def test_random_texts(self):
        automaton = Automaton(GRAMMAR)
        generator = random.Random(SEED)
        sources = [random_text(generator) for _ in range(TEXTS)]
        for source, (_, lines) in zip(sources, diagnostics(sources)):
            with self.subTest(source=source):
                # The parser's own checks speak up in between.
                actual = [line for line in lines
                          if line.startswith("Lexer error") or ": syntax error" in line]
                self.assertEqual(actual, expected_lines(automaton, source))


if __name__ == "__main__":
    unittest.main()
