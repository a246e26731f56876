#!/usr/bin/env python3
"""The entry for Helix has the form that Helix reads. (Debian has no Helix that could be asked.)"""

import tomllib
import unittest

from sample import EDITORS


class Helix(unittest.TestCase):
    def test_entry(self):
        with open(EDITORS / "helix" / "languages.toml", "rb") as file:
            entry = tomllib.load(file)
        (language,) = entry["language"]
        self.assertEqual(language["file-types"], ["krl"])
        self.assertEqual(language["indent"]["unit"], " " * language["indent"]["tab-width"])
        for server in language["language-servers"]:
            self.assertEqual(entry["language-server"][server],
                             {"command": "krel", "args": ["lsp"]})


if __name__ == "__main__":
    unittest.main()
