#!/usr/bin/env python3
"""Holds the parser against its grammar's automaton: every state, by the message of an error in it.

For each state a shortest text is derived after which it is on top of the stack, and tokens that are
wrong there. What krelcc has to say about each is read from bison's report on parser/parser.y, not
from the compiler: the unexpected token, the line, and up to four expected tokens.

A state that reduces one rule without looking ahead, or that reduces a rule by default, cannot find
an error itself: the error shows in a state further on, and the message lists what that one accepts.
Such a state counts as covered when the parser passes through it between the last good token and the
message. Only the state behind the end of input has no error: nothing can follow there.

Five wrong tokens are tried for each state; KREL_EVERY_TOKEN=1 tries them all (a minute or two).
"""

import os
import pathlib
import unittest

from automaton import ACCEPT, END, Automaton, message
from diagnostics import diagnostics, syntax_error
from spelling import SPELLING

GRAMMAR = pathlib.Path(__file__).resolve().parents[2] / "parser" / "parser.y"
RULES = 131
STATES = 242
TOKENS_PER_STATE = None if os.environ.get("KREL_EVERY_TOKEN") else 5

automaton = Automaton(GRAMMAR)
# The two names that only carry a precedence are no tokens of the scanner.
TOKENS = [name for name in automaton.terminals if name not in ("UMINUS", "UPLUS")]


def errors_in(state, prefix):
    """The tokens that are wrong after the prefix and lead through the state; with traces."""
    traces = {token: automaton.simulate([*prefix, token]) for token in TOKENS}
    return {token: trace for token, trace in traces.items()
            if trace.failed and trace.position == len(prefix) and state in trace.visited}


def wrong_inputs(state):
    """The shortest text that leads to the state and can go wrong there, and its wrong tokens."""
    for prefix in automaton.prefixes[state]:
        errors = errors_in(state, prefix)
        if errors:
            return prefix, errors
    return None


def some_of(state, tokens):
    """A few of the tokens, evenly spread; others for the next state, so that all get a turn."""
    count = min(len(tokens), TOKENS_PER_STATE or len(tokens))
    return [tokens[(state + i * len(tokens) // count) % len(tokens)] for i in range(count)]


def source_of(tokens):
    """One token a line; the line of the end of input is the one behind the last line end."""
    return "".join(SPELLING[token] + "\n" for token in tokens if token != END)


class Grammar(unittest.TestCase):
    def test_automaton_is_the_one_of_the_language(self):
        self.assertEqual(len(automaton.rules), RULES)
        self.assertEqual(len(automaton.states), STATES)
        self.assertEqual([number for number, state in enumerate(automaton.states)
                          if state.conflict], [])

    def test_tokens_are_those_of_the_scanner(self):
        self.assertEqual(set(TOKENS), {END, *SPELLING})


class Parser(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.uncovered = []
        cls.unexpected = set()
        cls.sources = []
        cls.expected = []
        for state in range(len(automaton.states)):
            found = wrong_inputs(state)
            if found is None:
                cls.uncovered.append(state)
                continue
            prefix, errors = found
            for token in some_of(state, list(errors)):
                cls.unexpected.add(token)
                cls.sources.append(source_of([*prefix, token]))
                cls.expected.append(syntax_error(len(prefix) + 1,
                                                 message(token, errors[token].expected)))

    def test_every_state_but_the_last_can_go_wrong(self):
        accepting = [number for number, state in enumerate(automaton.states)
                     if state.default == ACCEPT]
        self.assertEqual(self.uncovered, accepting)

    def test_every_token_is_unexpected_somewhere(self):
        self.assertEqual(self.unexpected, set(TOKENS))

    def test_messages(self):
        for source, expected, (status, lines) in zip(self.sources, self.expected,
                                                     diagnostics(self.sources)):
            with self.subTest(source=source.split("\n")):
                self.assertEqual(status, 1)
                self.assertEqual([line for line in lines if ": syntax error" in line], [expected])
                # Other faults of the text are reported before, as its rules are reduced.
                self.assertEqual(lines[-1], expected)


if __name__ == "__main__":
    unittest.main()
