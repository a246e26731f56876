#!/usr/bin/env python3
"""The mode for Emacs: it compiles without warnings; colours, indentation, lists of messages.

Skipped where there is no Emacs; Debian's package is emacs-nox. How the mode works together with
eglot is tested with the language server.
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

FOLDER = EDITORS / "emacs"
ASK = pathlib.Path(__file__).resolve().with_name("ask.el")
EMACS = shutil.which("emacs")

COMMENT, STRING, NOTHING = "font-lock-comment-face", "font-lock-string-face", "nil"
FACES = {
    "a |comment": COMMENT,
    "|\"quotes\"": COMMENT,
    "|int twice": "font-lock-type-face",
    "int |twice": "font-lock-function-name-face",
    "int |number": "font-lock-variable-name-face",
    "|return": "font-lock-keyword-face",
    "A |block": COMMENT,
    "}}# |int": COMMENT,
    "# |void main": "font-lock-type-face",
    "}# int |hidden": COMMENT,
    "boolean |iffy": "font-lock-variable-name-face",
    "= |true": "font-lock-constant-face",
    "\"a |# b": STRING,
    "\\\"| c": STRING,
    "\"; # |int": COMMENT,
    "'|#'": STRING,
    "    |print": "font-lock-builtin-face",
    "print(\"|no": NOTHING,
    "|\\{ end": "font-lock-warning-face",
    "= |twice (": NOTHING,
    "|007": NOTHING,
}

WORD_FACES = {
    "types": "font-lock-type-face",
    "control": "font-lock-keyword-face",
    "functions": "font-lock-builtin-face",
    "constants": "font-lock-constant-face",
    "operators": NOTHING,
    "punctuation": NOTHING,
}


def emacs(arguments, directory, **environment):
    return subprocess.run(
        [EMACS, "-Q", "--batch", *arguments], cwd=directory, check=False, capture_output=True,
        text=True, timeout=TIMEOUT_SECONDS, stdin=subprocess.DEVNULL,
        env={**os.environ, "HOME": str(directory), "LC_ALL": "C.UTF-8", **environment})


@unittest.skipIf(EMACS is None, "there is no emacs; install the package emacs-nox")
class Emacs(unittest.TestCase):
    maxDiff = None

    def ask(self, program, indent=(), **request):
        with tempfile.TemporaryDirectory() as name:
            directory = pathlib.Path(name)
            (directory / "program.krl").write_text(program, encoding="utf-8")
            files = []
            for file in indent:
                files.append(f"{file.stem}.krl")
                (directory / files[-1]).write_text(
                    without_indentation(file.read_text(encoding="utf-8")), encoding="utf-8")
            (directory / "request").write_text(
                json.dumps(request | {"indent": files, "folder": str(FOLDER)}), encoding="utf-8")
            done = emacs(["-l", ASK], directory, REQUEST="request")
        self.assertEqual(done.returncode, 0, done.stderr)
        answer = json.loads(done.stdout)
        self.assertEqual(answer["mode"], "krel-mode")
        return answer

    def test_compiles_without_warnings(self):
        with tempfile.TemporaryDirectory() as name:
            file = pathlib.Path(shutil.copy(FOLDER / "krel-mode.el", name))
            done = emacs(["--eval", "(setq byte-compile-error-on-warn t)", "-f",
                          "batch-byte-compile", file], name)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertTrue(file.with_suffix(".elc").exists())
            done = emacs(["--eval", f'(checkdoc-file "{file}")'], name)
            self.assertEqual(done.stderr, "")

    def test_faces(self):
        answer = self.ask(PROGRAM, places=[place_of(piece) for piece in FACES])
        self.assertEqual(dict(zip(FACES, answer["faces"])), FACES)
        self.assertEqual(answer["functions"], ["*Rescan*", "twice"])

    def test_block_that_nothing_closes(self):
        """It is a comment of its own line, as to the scanner."""
        faces = self.ask("#{ int\nint x;\n}}# int\n", places=[(1, 4), (2, 1), (3, 5)])["faces"]
        self.assertEqual(faces, [COMMENT, "font-lock-type-face", COMMENT])

    def test_long_block(self):
        """Emacs looks at a text in pieces; this block lies in several, and braces between them."""
        lines = "int }}\n" * 2000
        program = f"#{{\n{lines}}}# int x;\n"
        faces = self.ask(program, places=[(2, 1), (1000, 1), (2001, 1), (2002, 1), (2002, 4)])
        self.assertEqual(faces["faces"], [*[COMMENT] * 4, "font-lock-type-face"])

    def test_words(self):
        texts = [(group, text) for group, texts in WORDS.items() for text in texts]
        # Every text on two lines: alone, and as a part of a name if it is a word.
        program = "".join(f"{text};\nx{text}_;\n" for _, text in texts)
        places = [place for number in range(len(texts))
                  for place in ((2 * number + 1, 1), (2 * number + 2, 2))]
        faces = self.ask(program, places=places)["faces"]
        for number, (group, text) in enumerate(texts):
            self.assertEqual(faces[2 * number:2 * number + 2], [WORD_FACES[group], NOTHING], text)

    def test_no_other_words(self):
        lists = {"types": "krel-types", "control": "krel-control", "functions": "krel-functions",
                 "constants": "krel-constants"}
        for group, variable in lists.items():
            done = emacs(["-l", FOLDER / "krel-mode.el", "--eval",
                          f"(princ (mapconcat #'identity {variable} \" \"))"], FOLDER)
            self.assertEqual(done.stdout.split(), WORDS[group])

    def test_indentation(self):
        texts = self.ask("", indent=LAID_OUT)["texts"]
        for file, text in zip(LAID_OUT, texts):
            self.assertEqual(text, file.read_text(encoding="utf-8"), file.name)
        self.assertEqual(len(texts), len(LAID_OUT))

    def test_messages(self):
        with tempfile.TemporaryDirectory() as name:
            program = pathlib.Path(name) / "program.krl"
            program.write_text("void main() {\n    int x = 2.5;\n    print(x, y);\n}\n",
                               encoding="utf-8")
            output = "".join(
                subprocess.run([KREL, command, program.name], cwd=name, check=False, text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                               timeout=TIMEOUT_SECONDS).stdout for command in ("run", "check"))
        answer = self.ask("", output=output)
        # The compiler's messages have no columns, those of krel check do.
        self.assertEqual(answer["problems"], [[2, None], [3, None], [2, 13], [3, 14]])


if __name__ == "__main__":
    unittest.main()
