"""Marks in the comments of a program: what to ask the server there, and what it has to answer.

A mark is the rest of a line behind "#@": calls as in Python, separated by ";". It concerns the code
before it in the line, or, alone in its line, the nearest line above with code in it. Places are
given by the text there: "tot|al" is the place within the word `total`, "total" is the word itself;
it is the first such text in the line. Names without quotes are places that `loc` has named,
anywhere in the program.

    int total = 0;                  #@ loc(total, "total")
    print(total, "\\n");             #@ definition("t|otal", total)
"""

import ast
import re

MARK = re.compile(r"^(.*?)(#@ (.*))?$")


class Mark:
    """One call."""

    def __init__(self, line, number, call, code):
        self.line = line      # the number of the line that the mark stands in
        self.number = number  # of the line it concerns
        self.verb = call.func.id
        self.code = code
        self.arguments = [self.value(each) for each in call.args]
        self.named = {each.arg: self.value(each.value) for each in call.keywords}

    def value(self, node):
        if isinstance(node, ast.Name):
            return Name(node.id)
        if isinstance(node, (ast.List, ast.Tuple)):
            return [self.value(each) for each in node.elts]
        return ast.literal_eval(node)


class Name(str):
    """The name of a place."""


class Marks:
    """All marks of a program."""

    def __init__(self, text):
        self.text = text
        self.marks = []
        self.places = {}  # by name: begin and end
        self.begins = []  # of the lines
        at = 0
        concerned = 0
        for number, line in enumerate(text.split("\n")):
            self.begins.append(at)
            at += len(line) + 1
            code, mark, calls = MARK.match(line).groups()
            if not mark or code.strip():
                concerned = number
                concerned_code = code
            if mark:
                for call in self.calls(calls):
                    self.marks.append(Mark(number, concerned, call, concerned_code))
        for mark in self.marks:
            if mark.verb == "loc":
                name, needle = mark.arguments
                assert name not in self.places, name
                self.places[name] = self.find(mark, needle)
        self.marks = [mark for mark in self.marks if mark.verb != "loc"]

    @staticmethod
    def calls(text):
        return [statement.value for statement in ast.parse(text.strip()).body]

    def find(self, mark, needle):
        """The begin and end of a place; of a text with "|", that is both."""
        if isinstance(needle, Name):
            return self.places[needle]
        cursor = needle.find("|")
        if cursor >= 0:
            needle = needle[:cursor] + needle[cursor + 1:]
        column = mark.code.find(needle)
        assert column >= 0, f"line {mark.line + 1}: no {needle!r} in {mark.code!r}"
        begin = self.begins[mark.number] + column
        if cursor >= 0:
            return begin + cursor, begin + cursor
        return begin, begin + len(needle)
