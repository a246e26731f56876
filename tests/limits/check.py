#!/usr/bin/env python3
"""Compiles one program that is large in one way and checks all that the compiler makes of it.

The programs are those of bench/inputs.py. What is expected is computed from the rules of the
language here: the whole intermediate representation, what the program prints, and for programs that
are too large for the native build in a test the whole assembly. These are built and run at a tenth
of the size in addition.

Usage: check.py --krelcc PATH [--scale N] [--stack MB] NAME
With --scale 20 the programs are 20 times smaller; nesting keeps its depth, which has a limit.
Everything runs on a stack of 8 MB: sanitized frames need a larger one.
"""

import argparse
import itertools
import os
import pathlib
import resource
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from typing import Callable, Iterator, Optional

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "bench"))

import inputs  # noqa: E402 (after the path is known)
import program  # noqa: E402
from measuring import build_stub  # noqa: E402

TIMEOUT_SECONDS = 280
RUN_FRACTION = 10
PIECES_AT_ONCE = 10_000
REALISTIC_LINES = 20_000
DUMPED_OPERANDS = 1_000


# The intermediate representation, and below the assembly, come in pieces: they are long.

def block_ir(number, *lines):
    return f"B{number}:\n" + "".join(f"    {line}\n" for line in lines)


def main_ir(lines):
    """A program that is a main of one block."""
    yield "main:\nB1:\n"
    for line in lines:
        yield f"    {line}\n"
    yield "\n"


def printed(value, temporary, conversion="inttostring"):
    """The lines of `print(value);` at the end of main."""
    return [f"_t{temporary} = {conversion} {value}", f"arg _t{temporary}", "call print, 1",
            "return"]


def functions_ir(n):
    for i in range(n):
        yield f"f{i}:\nB1:\n    param int a\n\n    _t0 = a + {i}\n    return _t0\n\n"
    yield from main_ir([
        "arg 7", "_t0 = call f0, 1", "first = _t0", "arg 7", f"_t1 = call f{n - 1}, 1",
        "last = _t1", "_t2 = inttostring first", "_t3 = inttostring last", '_t4 = _t2 + " "',
        "_t5 = _t4 + _t3", "arg _t5", "call print, 1", "return"])


def statements_lines(n):
    yield "x = 0"
    for i in range(n):
        yield f"_t{i} = x + 3"
        yield f"x = _t{i}"
    yield from printed("x", n)


def locals_lines(n):
    yield "total = 0"
    for i in range(n):
        yield f"v{i} = {i}"
    for i in range(n):
        yield f"_t{i} = total + v{i}"
        yield f"total = _t{i}"
    yield from printed("total", n)


def blocks_ir(n):
    """A conditional's join block is numbered before its body, and laid out after it."""
    yield "main:\n"
    number, lines = 1, ["x = 0"]
    for i in range(n // 2):
        test, join, body = f"_t{2 * i}", 2 * i + 2, 2 * i + 3
        yield block_ir(number, *lines, f"{test} = x > {i}", f"if {test} goto B{join}") + "\n"
        value = f"_t{2 * i + 1}"
        yield block_ir(body, f"{value} = x + 2", f"x = {value}", f"goto B{join}") + "\n"
        number, lines = join, []
    yield block_ir(number, *lines, *printed("x", n // 2 * 2)) + "\n"


def strings_lines(n):
    for i in range(n):
        yield f'arg "string {i}\\n"'
        yield "call print, 1"
    yield "return"


def doubles_lines(n):
    yield "x = 0.5"
    for i in range(1, n):
        yield f"_t{i - 1} = x + {i}.5"
        yield f"x = _t{i - 1}"
    yield from printed("x", n - 1, "doubletostring")


def chain_lines(n):
    yield "_t0 = 1 + 1"
    for i in range(1, n - 1):
        yield f"_t{i} = _t{i - 1} + 1"
    yield f"x = _t{n - 2}"
    yield from printed("x", n - 1)


def string_literal_lines(n):
    return ['arg "' + "abcdefghij" * (n // 10) + '"', "call print, 1", "return"]


def array_elements_lines(n):
    for i in range(n):
        yield f"a[{i}] = {i}"
    yield from printed(f"a[{n - 1}]", 0)


def elseif_arms_ir(n):
    """The join block is B2, the bodies are B3, B5, ..., the tests B4, B6, ..., the else block is
    the last one; the join block comes last."""
    yield "main:\n"
    number, lines = 1, [f"x = {n}"]
    for i in range(n + 1):
        body, following = 2 * i + 3, 2 * i + 4
        yield block_ir(number, *lines, f"_t{i} = x != {i}", f"if _t{i} goto B{following}") + "\n"
        yield block_ir(body, f"x = {i + 1}", "goto B2") + "\n"
        number, lines = following, []
    yield block_ir(number, "x = 0") + "\n"
    yield block_ir(2, *printed("x", n + 1)) + "\n"


def array_accesses_lines(n):
    for i in range(5):
        yield f"a[{i}] = {i + 1}"
    yield "i = 2"
    yield "total = 0"
    for k in range(n // 2):
        yield f"a[i] = {k}"
        yield f"_t{k} = total + a[{k % 5}]"
        yield f"total = _t{k}"
    yield from printed("total", n // 2)


def array_accesses_total(n):
    total, elements = 0, [1, 2, 3, 4, 5]
    for k in range(n // 2):
        elements[2] = k
        total += elements[k % 5]
    return total


# The assembly of a main of one block without constants.

def frame(sizes):
    """The slots of the names, in the order of their bytes, and the size of the frame."""
    slots, total = {}, 0
    for name in sorted(sizes):
        total += sizes[name]
        slots[name] = f"{-total}(%rbp)"
    return slots, (total + 15) // 16 * 16


def main_assembly(frame_size, instructions):
    yield ("\t.text\n\n\t.globl main\n\t.type main, @function\nmain:\n\tpushq %rbp\n"
           f"\tmovq %rsp, %rbp\n\tsubq ${frame_size}, %rsp\n.Lmain_B1:\n")
    for instruction in instructions:
        yield f"\t{instruction}\n"
    yield (".Lmain_return:\n\tleave\n\tret\n\t.size main, .-main\n"
           '\t.section .note.GNU-stack,"",@progbits\n')


def printed_assembly(temporary):
    """Prints what is in %rdi."""
    return ["call krel_inttostring@PLT", f"movq %rax, {temporary}", f"movq {temporary}, %rdi",
            "call krel_print@PLT", "xorl %eax, %eax", "jmp .Lmain_return"]


def scalar_frame(names, temporaries):
    return frame(dict.fromkeys([*names, *(f"_t{i}" for i in range(temporaries))], 8))


def statements_assembly(n):
    slots, size = scalar_frame(["x", "print"], n + 1)

    def instructions():
        x = slots["x"]
        yield from ["movq $0, %rax", f"movq %rax, {x}"]
        for i in range(n):
            t = slots[f"_t{i}"]
            yield from [f"movq {x}, %rax", "movq $3, %rcx", "addq %rcx, %rax", f"movq %rax, {t}",
                        f"movq {t}, %rax", f"movq %rax, {x}"]
        yield from [f"movq {x}, %rdi", *printed_assembly(slots[f"_t{n}"])]
    return main_assembly(size, instructions())


def chain_assembly(n):
    slots, size = scalar_frame(["x", "print"], n)

    def instructions():
        left, x = "$1", slots["x"]
        for i in range(n - 1):
            t = slots[f"_t{i}"]
            yield from [f"movq {left}, %rax", "movq $1, %rcx", "addq %rcx, %rax",
                        f"movq %rax, {t}"]
            left = t
        yield from [f"movq {left}, %rax", f"movq %rax, {x}"]
        yield from [f"movq {x}, %rdi", *printed_assembly(slots[f"_t{n - 1}"])]
    return main_assembly(size, instructions())


def array_elements_assembly(n):
    slots, size = frame({"a": 8 * n, "_t0": 8, "print": 8})

    def instructions():
        address = f"leaq {slots['a']}, %r10"
        for i in range(n):
            yield from [f"movq ${i}, %rax", f"movq ${i}, %r11", address,
                        "movq %rax, (%r10,%r11,8)"]
        yield from [f"movq ${n - 1}, %r11", address, "movq (%r10,%r11,8), %rdi"]
        yield from printed_assembly(slots["_t0"])
    return main_assembly(size, instructions())


@dataclass(frozen=True)
class Compiled:
    """What is expected of a program that compiles. With `assembly` the full size is not built."""

    ir: Callable[[int], Iterator[str]]
    printed: Callable[[int], str]
    assembly: Optional[Callable[[int], Iterator[str]]] = None


def one_block(lines):
    return lambda n: main_ir(lines(n))


ONE = Compiled(lambda n: main_ir(printed("1", 0)), lambda n: "1")

COMPILED = {
    "functions": Compiled(functions_ir, lambda n: f"7 {n + 6}"),
    "statements": Compiled(one_block(statements_lines), lambda n: f"{3 * n}", statements_assembly),
    "locals": Compiled(one_block(locals_lines), lambda n: f"{n * (n - 1) // 2}"),
    "blocks": Compiled(blocks_ir, lambda n: f"{(n // 2 + 1) // 2 * 2}"),
    "strings": Compiled(one_block(strings_lines),
                        lambda n: "".join(f"string {i}\n" for i in range(n))),
    "doubles": Compiled(one_block(doubles_lines), lambda n: f"{n * n // 2}"),
    "chain": Compiled(one_block(chain_lines), str, chain_assembly),
    "string-literal": Compiled(one_block(string_literal_lines),
                               lambda n: "abcdefghij" * (n // 10)),
    "line-comment": ONE,
    "block-comment": ONE,
    "unclosed-comments": Compiled(one_block(statements_lines), lambda n: f"{3 * n}"),
    "array-elements": Compiled(one_block(array_elements_lines), lambda n: f"{n - 1}",
                               array_elements_assembly),
    "elseif-arms": Compiled(elseif_arms_ir, lambda n: f"{n + 1}"),
    "array-accesses": Compiled(one_block(array_accesses_lines),
                               lambda n: f"{array_accesses_total(n)}"),
}

# One line of standard error per diagnostic.
REFUSED = {
    "semantic-errors": lambda i: (f"Semantic error in input.krl at line {i + 2}: "
                                  f"Undeclared identifier: 'missing{i}'.\n"),
    "lexical-errors": lambda i: (f"Lexer error in input.krl at line {i + 1}: "
                                 "illegal character '$'\n"),
}

NESTED = {
    "parentheses": lambda depth: "3",
    "unary-operators": lambda depth: "3" if depth % 2 == 0 else "-3",
    "right-sums": lambda depth: f"{depth + 3}",
    "calls": lambda depth: f"{depth + 3}",
    "nested-blocks": lambda depth: "4",
    "nested-ifs": lambda depth: "4",
    "nested-loops": lambda depth: "4",
}


class Mismatch(Exception):
    pass


def expect(what, actual, expected):
    """Fails with the first difference: the texts may be too long to be shown."""
    if actual == expected:
        return
    pairs = enumerate(zip(actual, expected))
    start = next((i for i, (a, b) in pairs if a != b), min(len(actual), len(expected)))
    first = max(start - 40, 0)
    raise Mismatch(f"{what} ({len(actual)} long, expected {len(expected)}) differs from {start} on:"
                   f"\n  actual   {actual[first:start + 80]!r}"
                   f"\n  expected {expected[first:start + 80]!r}")


def limit_stack(megabytes):
    limit = megabytes << 20
    resource.setrlimit(resource.RLIMIT_STACK, (limit, limit))


class Directory:
    """A fresh directory in which one program is compiled and run."""

    def __init__(self, krelcc, path, stack):
        self.krelcc = krelcc
        self.stack = stack
        self.path = pathlib.Path(path)
        self.stub = build_stub(self.path / "stub")

    def run(self, command, native=True):
        search_path = os.environ["PATH"] if native else f"{self.stub}:{os.environ['PATH']}"
        return subprocess.run(
            command, cwd=self.path, stdin=subprocess.DEVNULL, capture_output=True, check=False,
            timeout=TIMEOUT_SECONDS, preexec_fn=lambda: limit_stack(self.stack),
            env={**os.environ, "PATH": search_path, "LC_ALL": "C",
                 "ASAN_OPTIONS": "detect_leaks=0"})

    def compile(self, source, *options, native=True):
        (self.path / "input.krl").write_text(source, encoding="ascii")
        return self.run([self.krelcc, "input.krl", *options], native)

    def compile_well(self, source, *options, native=True):
        result = self.compile(source, *options, native=native)
        expect("standard error", result.stderr, b"")
        expect("the exit status", str(result.returncode), "0")

    def refuse(self, source, diagnostics):
        result = self.compile(source)
        expect("standard error", result.stderr.decode(), diagnostics)
        expect("the exit status", str(result.returncode), "1")
        expect("standard output", result.stdout, b"")

    def expect_file(self, suffix, pieces):
        pieces, position = iter(pieces), 0
        with open(self.path / f"input.{suffix}", encoding="ascii") as file:
            while expected := "".join(itertools.islice(pieces, PIECES_AT_ONCE)):
                expect(f"the {suffix} dump from {position} on", file.read(len(expected)), expected)
                position += len(expected)
            expect(f"the end of the {suffix} dump", file.read(80), "")

    def expect_printed(self, expected):
        result = self.run([str(self.path / "input")])
        expect("the program's standard error", result.stderr, b"")
        expect("the program's exit status", str(result.returncode), "0")
        expect("the program's output", result.stdout.decode(), expected)


def check_compiled(directory, text, size, expected):
    if expected.assembly:
        directory.compile_well(text(size), "--ir-dump", "--asm-dump", native=False)
        directory.expect_file("s", expected.assembly(size))
    else:
        directory.compile_well(text(size), "--ir-dump")
    directory.expect_file("ir", expected.ir(size))
    if expected.assembly:
        size //= RUN_FRACTION
        directory.compile_well(text(size))
    directory.expect_printed(expected.printed(size))


def check_line_after(directory, source, statement):
    """A fault in place of the statement is reported on the statement's line."""
    line = source.count("\n", 0, source.index(statement)) + 1
    directory.refuse(source.replace(statement, "missing = 1;"),
                     f"Semantic error in input.krl at line {line}: "
                     "Undeclared identifier: 'missing'.\n")


def check_nesting(directory, nesting, expected):
    deepest = nesting.deepest()
    for depth in (deepest // 2, deepest):
        directory.compile_well(nesting.text(depth))
        directory.expect_printed(expected(depth))
    source = nesting.text(deepest + 1)
    line = source.count("\n", 0, source.index(nesting.statement(deepest + 1))) + 1
    directory.refuse(source, f"Syntax error in input.krl at line {line}: memory exhausted\n")


def check_realistic_program(directory, scale):
    """The generated program prints what the same program in C prints."""
    krel, c = program.generate(lines=REALISTIC_LINES // scale)
    (directory.path / "c.c").write_text(c, encoding="ascii")
    subprocess.run(["gcc", "-w", "-O0", "c.c", "-o", "c"], cwd=directory.path, check=True)
    directory.compile_well(krel)
    directory.expect_printed(directory.run([str(directory.path / "c")]).stdout.decode())


def check_deep_dump(directory, _):
    """The dump of a chain is as deep as it is long. Each operand after the second one adds a level
    of two indentations and twelve lines: seven of the operator, five of its right operand."""
    def shape(operands):
        directory.compile_well(inputs.chain(operands), "--ast-dump", native=False)
        dump = (directory.path / "input.ast.json").read_text()
        lines = dump.splitlines()
        return len(lines), max(len(line) - len(line.lstrip()) for line in lines)
    lines, indentation = shape(2)
    more = DUMPED_OPERANDS - 2
    expect("lines and indentation", str(shape(DUMPED_OPERANDS)),
           str((lines + 12 * more, indentation + 4 * more)))


OTHER_CHECKS = {"realistic-program": check_realistic_program, "deep-dump": check_deep_dump}


def check(directory, name, scale):
    if name in OTHER_CHECKS:
        OTHER_CHECKS[name](directory, scale)
        return
    for nesting in inputs.NESTINGS:
        if nesting.name == name:
            check_nesting(directory, nesting, NESTED[name])
            return
    entry = next(entry for entry in inputs.INPUTS if entry.name == name)
    size = entry.size // scale
    if entry.compiles:
        check_compiled(directory, entry.text, size, COMPILED[name])
    else:
        directory.refuse(entry.text(size), "".join(map(REFUSED[name], range(size))))
    if name.endswith("-comment"):
        check_line_after(directory, entry.text(size), "print(1);")


def main():
    names = [*(entry.name for entry in [*inputs.INPUTS, *inputs.NESTINGS]), *OTHER_CHECKS]
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    what = parser.add_mutually_exclusive_group(required=True)
    what.add_argument("name", nargs="?", choices=names)
    what.add_argument("--list", action="store_true", help="print the names, one a line")
    parser.add_argument("--krelcc", type=pathlib.Path)
    parser.add_argument("--scale", type=int, default=1)
    parser.add_argument("--stack", type=int, default=8, metavar="MB")
    options = parser.parse_args()
    if options.list:
        print("\n".join(names))
        return 0
    with tempfile.TemporaryDirectory() as path:
        directory = Directory(str(options.krelcc.resolve()), path, options.stack)
        try:
            check(directory, options.name, options.scale)
        except Mismatch as mismatch:
            print(mismatch)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
