#!/usr/bin/env python3
"""The runtime object: needs nothing, shows nothing but its entry points, and is small.

A Krel function may have any name, so a symbol that the object left undefined could be taken from
the program, and one that it defined could clash with it.
"""

import collections
import subprocess
import unittest

from harness import OBJECTS, RUNTIME

ENTRY_POINTS = {"krel_print", "krel_concat", "krel_inttostring", "krel_chartostring",
                "krel_booltostring", "krel_doubletostring"}

Symbol = collections.namedtuple("Symbol", ["name", "binding", "section"])


def symbols(path):
    """The named symbols of an object file."""
    table = subprocess.run(["readelf", "--symbols", "--wide", path], capture_output=True, text=True,
                           check=True).stdout
    for line in table.splitlines():
        fields = line.split()
        if len(fields) == 8 and fields[0].rstrip(":").isdigit():
            yield Symbol(name=fields[7], binding=fields[4], section=fields[6])


class ObjectChecks:
    """What holds for the object at `path`, whoever made it."""

    path = None

    def setUp(self):
        if not self.path.exists():
            self.skipTest(f"there is no {self.path}: its compiler was missing in the build")

    def test_has_no_undefined_symbol(self):
        self.assertEqual([each.name for each in symbols(self.path) if each.section == "UND"], [])

    def test_shows_its_entry_points_only(self):
        self.assertEqual({each.name for each in symbols(self.path) if each.binding != "LOCAL"},
                         ENTRY_POINTS)

    def test_is_under_64_kilobytes(self):
        self.assertLess(self.path.stat().st_size, 64 * 1024)


class InUse(ObjectChecks, unittest.TestCase):
    path = RUNTIME


class MadeByGcc(ObjectChecks, unittest.TestCase):
    path = OBJECTS / "by-g++.o"


class MadeByClang(ObjectChecks, unittest.TestCase):
    path = OBJECTS / "by-clang++.o"


class Collecting(ObjectChecks, unittest.TestCase):
    path = OBJECTS / "collecting.o"


if __name__ == "__main__":
    unittest.main()
