#!/usr/bin/env python3
"""krel lsp in Neovim: what its own client makes of diagnostics, a repair, typing, names, layout.

Skipped where there is no nvim; Debian's package is neovim.
"""

import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from client import KREL, TIMEOUT_SECONDS

SCRIPT = pathlib.Path(__file__).resolve().with_name("neovim.lua")
FILES = SCRIPT.parents[3] / "editors" / "vim"
PROGRAM = "void main() {\n    int x;\n    print(\"größe 😀\", x, \"\\n\");\n}\n"
NVIM = shutil.which("nvim")


@unittest.skipIf(NVIM is None, "there is no nvim; install the package neovim")
class Neovim(unittest.TestCase):
    maxDiff = None

    def test_session(self):
        with tempfile.TemporaryDirectory() as name:
            program = pathlib.Path(name) / "größe.krl"
            program.write_text(PROGRAM, encoding="utf-8")
            done = subprocess.run(
                [NVIM, "--headless", "--clean", "-n", "--cmd",
                 f"set runtimepath^={FILES} | filetype plugin on", "-S", SCRIPT],
                cwd=name, check=False, capture_output=True, text=True,
                timeout=TIMEOUT_SECONDS, stdin=subprocess.DEVNULL,
                env={**os.environ, "KREL": str(KREL), "PROGRAM": program.name, "HOME": name,
                     "XDG_STATE_HOME": name, "XDG_CACHE_HOME": name, "LC_ALL": "C.UTF-8"})
        seen = json.loads(done.stdout)
        self.assertNotIn("fault", seen)
        self.assertEqual(seen["diagnostics"], [["initial-value", 1, 8]])
        self.assertEqual(seen["title"], "Repair: write `x = 0`")
        printing = "    print(\"größe 😀\", x, \"\\n\");"
        self.assertEqual(seen["repaired"], ["void main() {", "    int x = 0;", printing, "}"])
        # Neovim counts bytes.
        column = len("    print(\"größe 😀\", ".encode())
        self.assertEqual(seen["edited"], [["undeclared-name", 2, column]])
        self.assertIn("void print(value, ...)", seen["hover"])
        renamed = ["void main() {", "    int count = 0;", printing.replace("x", "count"), "}"]
        self.assertEqual(seen["renamed"], renamed)
        self.assertEqual(seen["formatted"], [*renamed[:3], "    count++;", "}"])
        self.assertEqual(seen["status"], 0)


if __name__ == "__main__":
    unittest.main()
