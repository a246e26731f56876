"""What the tests of several editors share: a program, the words, and where things lie.

The tests take krelcc's path from the environment variable KRELCC, and krel is the one beside it.
"""

import json
import os
import pathlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
EDITORS = ROOT / "editors"
KREL = pathlib.Path(os.environ["KRELCC"]).resolve().with_name("krel")
TIMEOUT_SECONDS = 120

# The list that the scanner's test compares with the scanner.
WORDS = json.loads((EDITORS / "words.json").read_text(encoding="ascii"))

# Every rule of the scanner that is easy to get wrong.
PROGRAM = r"""# a comment with "quotes" and int
int twice(int number) { return number * 2; }
#{ A block of
   several lines }}# int that
   ends }# void main() {
    #{ alone on its line }# int hidden;
    boolean iffy = true;
    string text = "a # b \" c"; # int
    character mark = '#';
    print("no \{ end, iffy);
    iffy = twice (12.75) == 007;
}
"""

# Programs that lie in the layout of `krel fmt`, and have every kind of line break.
GOLDENS = ROOT / "tests" / "tools" / "format" / "goldens"
LAID_OUT = sorted((ROOT / "examples").glob("*.krl")) + [
    GOLDENS / f"{name}.golden" for name in ("line-breaks", "one-line-blocks", "spacing",
                                            "statements", "comments-at-line-ends")]


def place_of(marked):
    """The line and the column, both from 1, of the character behind the | in a piece of PROGRAM."""
    piece = marked.replace("|", "", 1)
    if PROGRAM.count(piece) != 1:
        raise ValueError(f"{piece!r} is not there once")
    offset = PROGRAM.index(piece) + marked.index("|")
    return PROGRAM.count("\n", 0, offset) + 1, offset - PROGRAM.rfind("\n", 0, offset)


def without_indentation(text):
    """A program whose lines begin at the left; those with nothing but a comment stay."""
    return "".join(line if line.lstrip().startswith("#") else line.lstrip(" ")
                   for line in text.splitlines(keepends=True))
