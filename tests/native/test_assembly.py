#!/usr/bin/env python3
"""Our own assembler makes the same of all programs as the system's, and reads objects alike.

The programs are those of the cases and the examples, random ones and large ones.
"""

import concurrent.futures
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

from harness import KRELCC, OBJECTS, RUNTIME, SOURCES, run

sys.path += [str(SOURCES / "tests" / "soak"), str(SOURCES / "bench")]
import generator  # noqa: E402 (after the path is known)
import inputs  # noqa: E402

SEED = int(os.environ.get("KREL_SEED", "1"))
SOAK_PROGRAMS = int(os.environ.get("KREL_PROGRAMS", "60"))
MUTANTS = int(os.environ.get("KREL_MUTANTS", "250"))

SMALLER = 200  # how much smaller the large programs are made
NESTING = 300


def sources():
    """All programs: a name and a text each."""
    for case in sorted((SOURCES / "tests" / "cases").glob("*/*/input.*")):
        text = case.read_bytes()
        if case.suffix == ".py":
            text = subprocess.run([sys.executable, case], capture_output=True, check=True).stdout
        yield f"{case.parent.parent.name}-{case.parent.name}", text
    for example in sorted((SOURCES / "examples").glob("*.krl")):
        yield f"example-{example.stem}", example.read_bytes()
    for seed in range(SEED, SEED + SOAK_PROGRAMS):
        yield f"soak-{seed}", generator.generate(seed)[0]
    for large in inputs.INPUTS:
        yield f"large-{large.name}", large.text(large.size // SMALLER).encode()
    for nesting in inputs.NESTINGS:
        yield f"deep-{nesting.name}", nesting.text(NESTING).encode()


class Programs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        """Has all programs compiled to assembly. The native compiler is one that does nothing."""
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.directory = pathlib.Path(temporary.name)
        nothing = cls.directory / "bin"
        nothing.mkdir()
        (nothing / "gcc").symlink_to("/bin/true")
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            made = pool.map(lambda source: cls.compile(nothing, *source), sources())
            cls.assembly = sorted(path for path in made if path)

    @classmethod
    def compile(cls, path, name, text):
        """The assembly of a program, or None when it does not compile."""
        source = cls.directory / f"{name}.krl"
        source.write_bytes(text)
        status, _, _ = run(KRELCC, source.name, "--asm-dump", cwd=cls.directory,
                           environment={"PATH": str(path)})
        return source.with_suffix(".s") if status == 0 else None

    def test_there_are_many(self):
        self.assertGreater(len(self.assembly), 300)

    def test_same_object(self):
        def assemble(path):
            subprocess.run(["as", "-o", path.with_suffix(".o"), path], check=True)
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            list(pool.map(assemble, self.assembly))
        self.assertEqual(run(OBJECTS, "compare", *self.assembly), (0, "", ""))

    def test_mutants_are_the_same_or_refused(self):
        small = [path for path in self.assembly if path.stat().st_size < 3000]
        self.assertGreater(len(small), 100)
        self.assertEqual(run(OBJECTS, "mutate", SEED, MUTANTS, *small), (0, "", ""))


BINDINGS = {"LOCAL": "local", "GLOBAL": "global"}
SYMBOL_TYPES = {"NOTYPE": 0, "OBJECT": 1, "FUNC": 2, "SECTION": 3, "FILE": 4}
SECTION_TYPES = {"PROGBITS": 1, "NOBITS": 8, "INIT_ARRAY": 14, "FINI_ARRAY": 15}
SECTION_FLAGS = {"W": 1, "A": 2, "X": 4, "M": 0x10, "S": 0x20, "G": 0x200}
RELOCATION_TYPES = {"R_X86_64_64": 1, "R_X86_64_PC32": 2, "R_X86_64_PLT32": 4}


class Readelf:
    """What readelf says of an object, in the words of `objects describe`."""

    def __init__(self, path):
        self.path = path
        self.sections = dict(self.read_sections())

    def rows(self, option):
        table = subprocess.run(["readelf", option, "--wide", self.path], capture_output=True,
                               text=True, check=True).stdout
        return table.splitlines()

    def read_sections(self):
        for row in self.rows("--sections"):
            number, found, fields = row.partition("]")
            fields = fields.split()
            if found and number.strip(" [").isdigit() and len(fields) >= 10:
                yield int(number.strip(" [")), fields

    def loaded(self):
        """The sections that take memory: number, name, type, flags, alignment, size."""
        for number, fields in self.sections.items():
            flags = "".join(fields[6:-3])
            if "A" in flags:
                yield (number, fields[0], SECTION_TYPES[fields[1]],
                       sum(SECTION_FLAGS[letter] for letter in flags), int(fields[-1]),
                       int(fields[4], 16))

    def lines(self):
        loaded = list(self.loaded())
        names = {number: name for number, name, *_ in loaded}
        for _, name, kind, flags, alignment, size in loaded:
            if size:
                yield (f"section {name} type {kind} flags {flags} alignment {alignment} "
                       f"size {size}")
        symbols = [row.split() for row in self.rows("--symbols")]
        symbols = [row for row in symbols if len(row) == 8 and row[0].rstrip(":").isdigit()]
        for binding in BINDINGS:
            for _, value, size, kind, bound, _, section, name in symbols:
                if bound == binding and kind != "SECTION":
                    place = names.get(int(section), "nothing") if section.isdigit() else "nothing"
                    yield (f"symbol {name} {BINDINGS[binding]} type {SYMBOL_TYPES[kind]} in "
                           f"{place} at {int(value, 16)} size {int(size, 0)}")
        yield from self.relocations(names)

    def relocations(self, names):
        of = {}
        section = None
        for row in self.rows("--relocs"):
            fields = row.split()
            if row.startswith("Relocation section"):
                section = fields[2].strip("'").removeprefix(".rela")
                of[section] = []
            elif len(fields) == 7 and fields[2] in RELOCATION_TYPES:
                offset, _, kind, _, symbol, sign, addend = fields
                name = f"[{symbol}]" if symbol in names.values() else symbol
                addend = int(addend, 16) * (-1 if sign == "-" else 1)
                of[section].append(f"relocation of {section} at {int(offset, 16)} type "
                                   f"{RELOCATION_TYPES[kind]} to {name} + {addend}")
        for name in names.values():
            yield from of.get(name, [])


class Runtime(unittest.TestCase):
    def test_reads_what_readelf_reads(self):
        expected = list(Readelf(RUNTIME).lines())
        for what, least in (("section", 4), ("symbol", 20), ("relocation", 20)):
            self.assertGreater(len([line for line in expected if line.startswith(what)]), least)
        status, described, _ = run(OBJECTS, "describe", RUNTIME)
        self.assertEqual(status, 0)
        self.assertEqual(described.splitlines(), expected)


if __name__ == "__main__":
    unittest.main()
