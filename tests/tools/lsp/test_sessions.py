#!/usr/bin/env python3
"""Each program in sessions/ is a session: its marks say what is asked, and what the answer is.

Every program is played in UTF-16 and in UTF-8. marks.py describes the marks; here are the verbs:

    diagnostic(text, rule[, severity])   all diagnostics of a program have to be marked
    unmarked_diagnostics()               but not in this program
    hover(place, part...)                the text has all these parts; none: there is no answer
    definition(place, place...), references(place, place...)
    highlight(place, read=[place...], write=[place...])
    rename(place, name, place...), not_renamed(place, name, part of the message)
    complete(place, label...), not_completed(place, label...)
    signature(place, label, number of the parameter), no_signature(place)
    fix(text, part of the title, line...)    the lines that stand in the place of this one then
    no_fix(text)
    one_meaning(text)                    all that is offered is to compare
    symbol(text, kind, parent name)      of functions (all are to be marked) or in one
    fold(text, text), not_folded(text)   from the line of the one to the line of the other
    select(place, text...)               from the innermost to the line's own
    hint(place, label)                   all hints of a program have to be marked
    token(text, type, modifier...)
    on_type(place, character, line)      what the line is then
"""

import json
import pathlib
import unittest

from client import ABILITIES, URI, Client, Refused, edited, position_of, range_of
from marks import Marks

HERE = pathlib.Path(__file__).resolve().parent
SEVERITIES = {"error": 1, "warning": 2, "hint": 4}
SYMBOL_KINDS = {"function": 12, "variable": 13, "array": 18}


def plain(value):
    """A text that is the same for the same values."""
    return json.dumps(value, sort_keys=True)


def abilities(encoding):
    return {**ABILITIES, "general": {"positionEncodings": [encoding]}}


class Session:
    """Plays the marks of one program."""

    def __init__(self, test, path, encoding):
        self.test = test
        self.encoding = encoding
        self.text = path.read_text(encoding="utf-8")
        self.marks = Marks(self.text)

    def play(self):
        with Client(abilities(self.encoding)) as client:
            self.client = client
            self.test.assertEqual(client.abilities["positionEncoding"], self.encoding)
            client.open(self.text)
            self.check_all()
            for mark in self.marks.marks:
                with self.test.subTest(line=mark.line + 1, verb=mark.verb):
                    getattr(self, "mark_" + mark.verb, self.ignore)(
                        mark, *mark.arguments, **mark.named)
            self.test.assertEqual(client.end(), 0)

    def check_all(self):
        """What is asked once for the whole program."""
        expected = []
        for mark in self.of_verb("diagnostic"):
            text, rule, severity = (*mark.arguments, "error")[:3]
            expected.append((self.range(mark, text), rule, SEVERITIES[severity]))
        found = [(each["range"], each["code"], each["severity"])
                 for each in self.client.diagnostics()]
        if not self.of_verb("unmarked_diagnostics"):
            self.same(found, expected)
        whole = range_of(self.text, 0, len(self.text), self.encoding)
        hints = [(each["position"], each["label"])
                 for each in self.client.ask("inlayHint", range=whole)]
        self.same(hints, [(self.position(mark, mark.arguments[0]), mark.arguments[1])
                          for mark in self.of_verb("hint")])
        self.symbols = self.client.ask("documentSymbol")
        functions = [mark for mark in self.of_verb("symbol") if len(mark.arguments) == 2]
        if functions:
            self.test.assertEqual(len(functions), len(self.symbols))
        self.tokens = self.read_tokens()
        self.folds = [(each["startLine"], each["endLine"])
                      for each in self.client.ask("foldingRange")]

    def of_verb(self, verb):
        return [mark for mark in self.marks.marks if mark.verb == verb]

    def ignore(self, mark, *_, **__):
        """What was looked at for the whole program."""
        self.test.assertIn(mark.verb, ("diagnostic", "unmarked_diagnostics", "hint"))

    def same(self, found, expected):
        """The same things, in any order."""
        self.test.assertEqual(sorted(map(plain, found)), sorted(map(plain, expected)))

    # Places

    def range(self, mark, place):
        return range_of(self.text, *self.marks.find(mark, place), self.encoding)

    def position(self, mark, place):
        return position_of(self.text, self.marks.find(mark, place)[0], self.encoding)

    def ask(self, mark, method, place, **parameters):
        return self.client.ask(method, position=self.position(mark, place), **parameters)

    def ranges(self, mark, places):
        return [self.range(mark, place) for place in places]

    # Names

    def mark_hover(self, mark, place, *parts):
        answer = self.ask(mark, "hover", place)
        if not parts:
            self.test.assertIsNone(answer)
        for part in parts:
            self.test.assertIn(part, answer["contents"]["value"])

    def locations(self, mark, locations, places):
        self.test.assertEqual({each["uri"] for each in locations} - {URI}, set())
        self.same([each["range"] for each in locations], self.ranges(mark, places))

    def mark_definition(self, mark, place, *places):
        self.locations(mark, self.ask(mark, "definition", place), places)

    def mark_references(self, mark, place, *places):
        everything = self.ask(mark, "references", place, context={"includeDeclaration": True})
        self.locations(mark, everything, places)
        declared = [each["range"] for each in self.ask(mark, "definition", place)]
        uses = self.ask(mark, "references", place, context={"includeDeclaration": False})
        self.same([each["range"] for each in uses],
                  [each["range"] for each in everything if each["range"] not in declared])

    def mark_highlight(self, mark, place, read=(), write=()):
        found = [(each["range"], each["kind"])
                 for each in self.ask(mark, "documentHighlight", place)]
        self.same(found, [(each, 2) for each in self.ranges(mark, read)]
                  + [(each, 3) for each in self.ranges(mark, write)])

    def edits_of(self, edit):
        [change] = edit["documentChanges"]
        self.test.assertEqual(change["textDocument"], {"uri": URI, "version": 1})
        return change["edits"]

    def mark_rename(self, mark, place, name, *places):
        edits = self.edits_of(self.ask(mark, "rename", place, newName=name))
        self.test.assertEqual({each["newText"] for each in edits}, {name})
        self.same([each["range"] for each in edits], self.ranges(mark, places))
        prepared = self.ask(mark, "prepareRename", place)
        self.test.assertIn(prepared["range"], self.ranges(mark, places))

    def mark_not_renamed(self, mark, place, name, part):
        with self.test.assertRaises(Refused) as refused:
            self.ask(mark, "rename", place, newName=name)
        self.test.assertIn(part, str(refused.exception))

    # Writing

    def labels(self, mark, place):
        return [each["label"] for each in self.ask(mark, "completion", place)["items"]]

    def mark_complete(self, mark, place, *labels):
        found = self.labels(mark, place)
        for label in labels:
            self.test.assertIn(label, found)

    def mark_not_completed(self, mark, place, *labels):
        found = self.labels(mark, place)
        for label in labels:
            self.test.assertNotIn(label, found)

    def mark_signature(self, mark, place, label, number):
        answer = self.ask(mark, "signatureHelp", place)
        self.test.assertEqual([each["label"] for each in answer["signatures"]], [label])
        self.test.assertEqual(answer["activeParameter"], number)

    def mark_no_signature(self, mark, place):
        self.test.assertIsNone(self.ask(mark, "signatureHelp", place))

    def mark_on_type(self, mark, place, character, line):
        edits = self.ask(mark, "onTypeFormatting", place, ch=character, options={})
        self.line_becomes(mark, edits, [line])

    def line_becomes(self, mark, edits, lines):
        """Edits put these lines in the place of the mark's, and change nothing else."""
        begin = self.marks.begins[mark.number]
        rest = self.text[begin + len(mark.code.rstrip()):]
        self.test.assertEqual(edited(self.text, edits, self.encoding),
                              self.text[:begin] + "\n".join(lines) + rest)

    # Repairs

    def actions(self, mark, text, **context):
        return self.client.ask("codeAction", range=self.range(mark, text),
                               context={"diagnostics": [], **context})

    def mark_fix(self, mark, text, title, *lines):
        found = [each for each in self.actions(mark, text, only=["quickfix"])
                 if title in each["title"] and "everything" not in each["title"]]
        self.test.assertEqual(len(found), 1)
        self.line_becomes(mark, self.edits_of(found[0]["edit"]), lines)
        self.test.assertIn(self.range(mark, text),
                           [each["range"] for each in found[0]["diagnostics"]])

    def mark_no_fix(self, mark, text):
        self.test.assertEqual(self.actions(mark, text, only=["quickfix"]), [])

    def mark_one_meaning(self, mark, text):
        titles = [each["title"] for each in self.actions(mark, text, only=["quickfix"])
                  if "diagnostics" in each
                  and each["diagnostics"][0]["code"] == "assignment-value"]
        self.test.assertEqual(titles, ["Compare: write `==`"])

    # Structure

    def mark_symbol(self, mark, text, kind, parent=None):
        symbols = self.symbols
        if parent is not None:
            [function] = [each for each in symbols if each["name"] == parent]
            symbols = function["children"]
        [symbol] = [each for each in symbols
                    if each["selectionRange"] == self.range(mark, text)]
        self.test.assertEqual((symbol["name"], symbol["kind"]), (text, SYMBOL_KINDS[kind]))

    def mark_fold(self, mark, first, last):
        self.test.assertIn((self.position(mark, first)["line"], self.position(mark, last)["line"]),
                           self.folds)

    def mark_not_folded(self, mark, text):
        self.test.assertNotIn(self.position(mark, text)["line"], [first for first, _ in self.folds])

    def mark_select(self, mark, place, *texts):
        [selection] = self.client.ask("selectionRange", positions=[self.position(mark, place)])
        for text in texts:
            self.test.assertEqual(selection["range"], self.range(mark, text))
            selection = selection["parent"]
        while "parent" in selection:
            selection = selection["parent"]
        self.test.assertEqual(selection["range"],
                              range_of(self.text, 0, len(self.text), self.encoding))

    # Semantic tokens

    def read_tokens(self):
        legend = self.client.abilities["semanticTokensProvider"]["legend"]
        data = self.client.ask("semanticTokens/full")["data"]
        tokens = {}
        line = character = 0
        for at in range(0, len(data), 5):
            lines, characters, length, kind, modifiers = data[at:at + 5]
            character = characters if lines > 0 else character + characters
            line += lines
            names = {name for bit, name in enumerate(legend["tokenModifiers"])
                     if modifiers >> bit & 1}
            tokens[line, character, length] = (legend["tokenTypes"][kind], names)
        return tokens

    def mark_token(self, mark, text, kind, *modifiers):
        place = self.range(mark, text)
        begin = place["start"]
        key = (begin["line"], begin["character"], place["end"]["character"] - begin["character"])
        self.test.assertEqual(self.tokens.get(key), (kind, set(modifiers)))


class Sessions(unittest.TestCase):
    """The tests are made below, one for each program and encoding."""


def add_tests():
    for path in sorted((HERE / "sessions").glob("*.krl")):
        for encoding in ("utf-16", "utf-8"):
            def test(self, path=path, encoding=encoding):
                Session(self, path, encoding).play()
            setattr(Sessions, f"test_{path.stem}_{encoding.replace('-', '')}", test)


add_tests()

if __name__ == "__main__":
    unittest.main()
