#!/usr/bin/env python3
"""krel lsp in Emacs: what eglot makes of diagnostics, a repair, typing, names and layout.

Skipped where there is no Emacs with eglot; Debian's packages are emacs-nox and elpa-eglot.
"""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from client import KREL, TIMEOUT_SECONDS

SCRIPT = pathlib.Path(__file__).resolve().with_name("eglot.el")
MODE = SCRIPT.parents[3] / "editors" / "emacs"
PROGRAM = "void main() {\n    int x;\n    print(\"größe 😀\", x, \"\\n\");\n}\n"
EMACS = shutil.which("emacs")
HAS_EGLOT = EMACS is not None and subprocess.run(
    [EMACS, "--batch", "-q", "--eval", "(progn (package-initialize) (require 'eglot))"],
    capture_output=True, check=False, timeout=TIMEOUT_SECONDS).returncode == 0


@unittest.skipUnless(HAS_EGLOT, "there is no Emacs with eglot; install emacs-nox and elpa-eglot")
class Eglot(unittest.TestCase):
    maxDiff = None

    def test_session(self):
        with tempfile.TemporaryDirectory() as name:
            program = pathlib.Path(name) / "größe.krl"
            program.write_text(PROGRAM, encoding="utf-8")
            done = subprocess.run(
                [EMACS, "--batch", "-q", "-l", SCRIPT], cwd=name, check=False,
                capture_output=True, timeout=TIMEOUT_SECONDS, stdin=subprocess.DEVNULL,
                env={**os.environ, "KREL": str(KREL), "PROGRAM": program.name,
                     "MODE": str(MODE), "HOME": name, "LC_ALL": "C.UTF-8"})
        seen = json.loads(done.stdout)
        self.assertNotIn("fault", seen)
        self.assertEqual(seen["mode"], "krel-mode")
        self.assertEqual(seen["diagnostics"], ["x"])
        self.assertEqual(seen["title"], "Repair: write `x = 0`")
        repaired = PROGRAM.replace("int x;", "int x = 0;")
        self.assertEqual(seen["repaired"], repaired)
        self.assertEqual(seen["edited"], ["y"])
        renamed = repaired.replace("x", "count")
        self.assertEqual(seen["renamed"], renamed)
        self.assertEqual(seen["formatted"], renamed.replace("}", "    count++;\n}"))


if __name__ == "__main__":
    unittest.main()
