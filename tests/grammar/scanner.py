"""The scanner's rules, tried one after another at each place: the slow and obvious way to scan."""

import collections
import re

from spelling import KEYWORDS, OPERATORS

SKIPPED = "skipped"
ILLEGAL = "illegal character"

Token = collections.namedtuple("Token", "kind text line")

# In order; the longest match wins, of equally long ones the first.
RULES = [(re.compile(pattern, re.ASCII | re.DOTALL), kind) for pattern, kind in (
    (r"[ \t\n]+", SKIPPED),
    (r"#\{([^}]|\}[^#])*\}#", SKIPPED),
    (r"#[^\n]*", SKIPPED),
    *((re.escape(text), token) for token, text in OPERATORS.items()),
    *((text, token) for token, text in KEYWORDS.items()),
    (r"[a-zA-Z_][a-zA-Z0-9_]*", "T_ID"),
    (r'"([^"\\\n]|\\[^\n])*"', "T_STRING_LITERAL"),
    (r"'([^'\\\n]|\\[^\n])?'", "T_CHARACTER_LITERAL"),
    (r"[0-9]+\.[0-9]+", "T_DECIMAL_LITERAL"),
    (r"[0-9]+", "T_INT_LITERAL"),
    (r"[^\n]", ILLEGAL),
)]


def scan(source):
    """Everything that the rules match in the source, each with the line on which it ends."""
    matches = []
    position = 0
    line = 1
    while position < len(source):
        candidates = [(rule.match(source, position), kind) for rule, kind in RULES]
        match, kind = max(((match, kind) for match, kind in candidates if match),
                          key=lambda candidate: candidate[0].end())
        line += match.group().count("\n")
        position = match.end()
        matches.append(Token(kind, match.group(), line))
    return matches
