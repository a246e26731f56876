#!/usr/bin/env python3
"""The files for Vim and Neovim: colours, indentation, and the list that :make gives.

Both are asked, as far as they are installed; Debian's packages are vim and neovim.
"""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from sample import (EDITORS, KREL, LAID_OUT, PROGRAM, TIMEOUT_SECONDS, WORDS, place_of,
                    without_indentation)

ASK = pathlib.Path(__file__).resolve().with_name("ask.vim")
COMMANDS = {
    "vim": ["vim", "-N", "-u", "NONE", "-i", "NONE", "-n", "-es"],
    "nvim": ["nvim", "--headless", "--clean", "-n"],
}
INSTALLED = [name for name in COMMANDS if shutil.which(name)]

GROUPS = {
    "# a |comment": "krelComment",
    "|\"quotes\"": "krelComment",
    "|int twice": "krelType",
    "int |twice": "krelFunction",
    "|return": "krelStatement",
    "number |* 2": "krelOperator",
    "* |2": "krelNumber",
    "2|; }": "krelDelimiter",
    "A |block": "krelBlockComment",
    "}}# |int": "krelBlockComment",
    "# |void main": "krelType",
    "}# int |hidden": "krelComment",
    "boolean |iffy": "",
    "= |true": "krelBoolean",
    "\"a |# b": "krelString",
    "b |\\\"": "krelEscape",
    "\"; |# int": "krelComment",
    "'|#'": "krelCharacter",
    "    |print": "krelBuiltin",
    "print(|\"no": "krelIllegal",
    "\\|{ end": "krelDelimiter",
    "= |twice (": "krelFunction",
    "(12|.75": "krelFloat",
    "7|5)": "krelFloat",
    ") |==": "krelOperator",
    "|007": "krelNumber",
}

WORD_GROUPS = {
    "types": {"krelType"},
    "control": {"krelConditional", "krelRepeat", "krelStatement"},
    "functions": {"krelBuiltin"},
    "constants": {"krelBoolean"},
    "operators": {"krelOperator"},
    "punctuation": {"krelDelimiter"},
}

FAULTY = """void main() {
    int x = 5
    int unused = x;
    print("sum", "\\n");
}
"""


def ask(editor, program, **request):
    """What the editor says about a program."""
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        (directory / "program.krl").write_text(program, encoding="utf-8")
        request |= {"program": "program.krl", "answer": "answer"}
        (directory / "request").write_text(json.dumps(request), encoding="utf-8")
        subprocess.run(
            [*COMMANDS[editor], "--cmd", f"set runtimepath^={EDITORS / 'vim'}", "-S", ASK],
            cwd=name, check=False, capture_output=True, timeout=TIMEOUT_SECONDS,
            stdin=subprocess.DEVNULL,
            env={**os.environ, "REQUEST": "request", "HOME": name, "XDG_STATE_HOME": name,
                 "XDG_CACHE_HOME": name, "LC_ALL": "C.UTF-8", "TERM": "dumb"})
        return json.loads((directory / "answer").read_text(encoding="utf-8"))


@unittest.skipUnless(INSTALLED, "there is no vim and no nvim; install the package vim or neovim")
class Vim(unittest.TestCase):
    maxDiff = None

    def each_answer(self, program, **request):
        for editor in INSTALLED:
            answer = ask(editor, program, **request)
            self.assertNotIn("fault", answer, editor)
            self.assertEqual(answer["filetype"], "krel", editor)
            yield editor, answer

    def test_groups(self):
        places = [place_of(piece) for piece in GROUPS]
        for editor, answer in self.each_answer(PROGRAM, places=places):
            self.assertEqual(dict(zip(GROUPS, answer["groups"])), GROUPS, editor)

    def test_words(self):
        texts = [(group, text) for group, texts in WORDS.items() for text in texts]
        # Every text on two lines: alone, and as a part of a name if it is a word.
        program = "".join(f"{text}\nx{text}_\n" for _, text in texts)
        places = [place for number in range(len(texts))
                  for place in ((2 * number + 1, 1), (2 * number + 2, 2))]
        for editor, answer in self.each_answer(program, places=places):
            for number, (group, text) in enumerate(texts):
                alone, within = answer["groups"][2 * number:2 * number + 2]
                self.assertIn(alone, WORD_GROUPS[group], (editor, text))
                if text.isalpha():
                    self.assertEqual(within, "", (editor, text))

    def test_no_other_words(self):
        """What the files list as words is in the list."""
        listed = set()
        for line in (EDITORS / "vim/syntax/krel.vim").read_text(encoding="ascii").splitlines():
            if line.startswith("syntax keyword") and not line.endswith("contained"):
                listed |= set(line.split()[3:])
        self.assertEqual(listed, {text for texts in WORDS.values() for text in texts
                                  if text.isalpha()})

    def test_indentation(self):
        with tempfile.TemporaryDirectory() as name:
            files = []
            for file in LAID_OUT:
                files.append(str(pathlib.Path(name) / f"{file.stem}.krl"))
                pathlib.Path(files[-1]).write_text(
                    without_indentation(file.read_text(encoding="utf-8")), encoding="utf-8")
            for editor, answer in self.each_answer("", indent=files):
                for file, text in zip(LAID_OUT, answer["texts"]):
                    self.assertEqual(text, file.read_text(encoding="utf-8"),
                                     (editor, file.name))

    def test_make(self):
        for editor, answer in self.each_answer(FAULTY, krel=str(KREL), make=True):
            self.assertEqual(answer["problems"], [
                [2, 14, "e", "a semicolon is missing here [missing-token]"],
                [3, 9, "w", "`unused` is never used [unused-variable]"]], editor)


if __name__ == "__main__":
    unittest.main()
