#!/usr/bin/env python3
"""The man pages: their form, and whether they tell of all commands and options that there are."""

import re
import subprocess
import unittest
from pathlib import Path

import commands

ROOT = Path(__file__).resolve().parents[2]
SOURCES = sorted((ROOT / "packaging" / "man").glob("*.scd"))
PAGES = sorted((commands.KREL.parent / "packaging" / "man").glob("*.[17]"))

# What scdoc makes of every page, whatever stands in it.
OF_SCDOC = ("skipping paragraph macro", "lower case character in document title")


def bold_words(name):
    """What stands between asterisks in the source of a page."""
    text = (ROOT / "packaging" / "man" / f"{name}.scd").read_text()
    return set(re.findall(r"\*(--?[a-z-]+)\*", text))


class ManPages(unittest.TestCase):
    def test_every_source_is_a_page(self):
        self.assertEqual([page.name for page in PAGES], [page.stem for page in SOURCES])

    def test_form(self):
        for page in PAGES:
            with self.subTest(page=page.name):
                run = subprocess.run(["mandoc", "-T", "lint", "-W", "style", page],
                                     capture_output=True, text=True, check=False)
                found = [line for line in run.stdout.splitlines()
                         if not any(known in line for known in OF_SCDOC)]
                self.assertEqual(found, [])

    def test_every_command_has_a_page_with_its_options(self):
        for name in commands.names():
            with self.subTest(command=name):
                self.assertEqual(bold_words(f"krel-{name}.1"), commands.options(name))

    def test_krel_names_its_commands(self):
        text = (ROOT / "packaging" / "man" / "krel.1.scd").read_text()
        self.assertEqual(re.findall(r"^\*krel-(\w+)\*\(1\)$", text, re.MULTILINE),
                         commands.names())

    def test_krelcc(self):
        self.assertEqual(bold_words("krelcc.1"), commands.long_options_of_krelcc() | {"-o"})

    def test_references_lead_to_pages(self):
        own = {page.name for page in PAGES}
        for source in SOURCES:
            for name, section in re.findall(r"\*(krel[a-z-]*)\*\((\d)\)", source.read_text()):
                with self.subTest(page=source.name, reference=name):
                    self.assertIn(f"{name}.{section}", own)

    def test_programs_in_krel_7(self):
        text = (ROOT / "packaging" / "man" / "krel.7.scd").read_text()
        program = re.search(r"# SYNOPSIS\n\n```\n(.*?)```", text, re.DOTALL)[1]
        run = subprocess.run([commands.KREL, "run", "-"], input=program.replace("\\\\", "\\"),
                             capture_output=True, text=True, check=False)
        self.assertEqual((run.stdout, run.stderr),
                         ("".join(f"2 to the power of {n} is {2 ** n}\n" for n in range(4)), ""))


if __name__ == "__main__":
    unittest.main()
