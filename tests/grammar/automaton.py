"""The LALR(1) automaton of a bison grammar, read from bison's own report, and a parser running it.

`Automaton.simulate` does what the generated parser does with the tables, as far as errors go: a
state that only reduces one rule does so without looking at the next token, any other state looks,
and a token for which a state has no entry takes the state's default reduction, so that an error is
found in the first state on the way that has none. What is accepted there is what a message may
list.
"""

import collections
import heapq
import itertools
import pathlib
import subprocess
import tempfile
import xml.etree.ElementTree as ElementTree

END = "end of file"  # the name of the end of input in messages; in the report its code is 0
MOST_EXPECTED = 4    # a longer list is left out of a message
ACCEPT = 0           # the number of the rule whose reduction ends the parse

Rule = collections.namedtuple("Rule", "left right")
Trace = collections.namedtuple("Trace", "failed expected position visited")


class State:
    """One state: what it does with each symbol, and without looking at any."""

    def __init__(self):
        self.shifts = {}            # terminal -> state
        self.gotos = {}             # nonterminal -> state
        self.reductions = {}        # terminal -> rule number
        self.default = None         # rule number reduced for every other terminal
        self.conflict = False

    def looks_ahead(self):
        return bool(self.shifts or self.reductions or self.default is None)

    def accepted(self):
        """The terminals that the state has an entry of its own for."""
        return set(self.shifts) | set(self.reductions)


class Automaton:
    """Rules, terminals in the order of their numbers, and states of one grammar file."""

    def __init__(self, grammar):
        report = bison_report(grammar)
        # Only the end of input and the tokens of the scanner have codes other than bison's own.
        self.terminals = [END if symbol.get("token-number") == "0" else symbol.get("name")
                          for symbol in report.find("grammar/terminals")
                          if symbol.get("token-number") not in ("256", "257")]
        self.end = next(symbol.get("name") for symbol in report.find("grammar/terminals")
                        if symbol.get("token-number") == "0")
        self.rules = [Rule(rule.findtext("lhs"),
                           [self.named(symbol.text) for symbol in rule.findall("rhs/symbol")])
                      for rule in report.find("grammar/rules")]
        self.states = [self.read_state(state) for state in report.find("automaton")]
        self.prefixes = self.find_prefixes()

    def named(self, symbol):
        return END if symbol == self.end else symbol

    def read_state(self, element):
        state = State()
        for transition in element.find("actions/transitions"):
            table = state.shifts if transition.get("type") == "shift" else state.gotos
            table[self.named(transition.get("symbol"))] = int(transition.get("state"))
        for reduction in element.find("actions/reductions"):
            number = ACCEPT if reduction.get("rule") == "accept" else int(reduction.get("rule"))
            if reduction.get("enabled") != "true":
                state.conflict = True
            elif reduction.get("symbol") == "$default":
                state.default = number
            else:
                state.reductions[self.named(reduction.get("symbol"))] = number
        return state

    def simulate(self, tokens):
        """Parses the tokens, up to the first that is wrong, or all of them.

        The trace tells which it was by `failed`, and where by `position`; then what the state that
        found the error accepts, in the order of the terminals' numbers, and all states that were on
        top of the stack since the last good token was shifted.
        """
        stack = [0]
        position = 0
        visited = [0]
        while True:
            state = self.states[stack[-1]]
            token = None
            if state.looks_ahead():
                if position == len(tokens):
                    return Trace(False, [], position, visited)
                token = tokens[position]
            if token in state.shifts:
                stack.append(state.shifts[token])
                position += 1
                visited = [stack[-1]]
                continue
            rule = state.reductions.get(token, state.default)
            if rule is None:
                expected = [name for name in self.terminals if name in state.accepted()]
                return Trace(True, expected, position, visited)
            if rule == ACCEPT:
                return Trace(False, [], position, visited)
            left, right = self.rules[rule]
            del stack[len(stack) - len(right):]
            stack.append(self.states[stack[-1]].gotos[left])
            visited.append(stack[-1])

    def expansions(self, symbol, yields):
        """The texts that a symbol derives, one per rule of it, each the shortest by `yields`."""
        if symbol in self.terminals:
            return [[symbol]]
        return [list(itertools.chain.from_iterable(yields[part] for part in right))
                for left, right in self.rules
                if left == symbol and all(part in yields for part in right)]

    def shortest_yields(self):
        """For every symbol, a shortest list of terminals that it derives."""
        symbols = dict.fromkeys(itertools.chain(self.terminals, (rule.left for rule in self.rules)))
        yields = {}
        changed = True
        while changed:
            changed = False
            for symbol in symbols:
                text = min(self.expansions(symbol, yields), key=len, default=None)
                if text is not None and (symbol not in yields or len(text) < len(yields[symbol])):
                    yields[symbol] = text
                    changed = True
        return yields

    def find_prefixes(self):
        """For every state, texts after which it can be on top of the stack, shortest first.

        There is one text per way into the state and per rule of the symbol on that way: a state may
        be entered by one of them only when the next token is right for it.
        """
        yields = self.shortest_yields()
        shortest = {}
        queue = [(0, 0, [])]
        while queue:
            _, number, prefix = heapq.heappop(queue)
            if number not in shortest:
                shortest[number] = prefix
                for symbol, target in self.ways_out(number):
                    text = prefix + yields[symbol]
                    heapq.heappush(queue, (len(text), target, text))
        prefixes = {number: [] for number in range(len(self.states))}
        prefixes[0].append([])
        for number, prefix in shortest.items():
            for symbol, target in self.ways_out(number):
                prefixes[target] += [prefix + text for text in self.expansions(symbol, yields)]
        return {number: sorted(texts, key=len) for number, texts in prefixes.items()}

    def ways_out(self, number):
        state = self.states[number]
        return itertools.chain(state.shifts.items(), state.gotos.items())


def bison_report(grammar):
    with tempfile.TemporaryDirectory() as directory:
        report = pathlib.Path(directory, "report.xml")
        parser = pathlib.Path(directory, "parser.cpp")
        subprocess.run(["bison", f"--xml={report}", "-o", str(parser), str(grammar)],
                       check=True, capture_output=True, text=True)
        return ElementTree.parse(report).getroot()


def message(unexpected, expected):
    """The text of a syntax error, after "Syntax error in ... at line ...: "."""
    text = f"syntax error, unexpected {unexpected}"
    if 0 < len(expected) <= MOST_EXPECTED:
        text += ", expecting " + " or ".join(expected)
    return text
