#!/usr/bin/env python3
"""Feeds krelcc damaged programs: whatever its input is, it ends soon and in one of its own ways.

Bytes, tokens and lines of the programs below the given folders (and of some model programs) are
changed at random. The native compiler is a stub that does nothing, so that each run is short.
The mutant of number N depends on nothing but N and the programs; --seed N --count 1 runs it again.
Usage: mutate.py --krelcc PATH [--count COUNT] [--seed SEED] [--keep DIR] [--jobs JOBS] FOLDER...
"""

import argparse
import concurrent.futures
import functools
import os
import pathlib
import random as random_module
import re
import resource
import shutil
import subprocess
import sys
import tempfile

import generator

CPU_SECONDS = 10  # of one run
TIMEOUT_SECONDS = 100  # for a run that does not even use the processor, or a very busy machine
MUTANTS_PER_TASK = 20
MODEL_PROGRAMS = 10
MAX_SOURCE = 30000  # bytes of a program that is worth damaging

TOKENS = rb"""int double boolean character void string if else elseif exit print true false for
while continue break return main x a f i n ( ) { } [ ] ; , = += -= ++ -- < > <= >= == != ! && || + -
* / 0 1 2 007 2147483647 2147483648 99999999999999999999 1.5 2.0 0.00001 "" "s" "a\"b\n" '' 'c'
'"' '\t' '\'' # #{ }# & | . % \ arg call goto param inttodouble chartostring _t0 B1
krel_print""".split()
TOKENS += [b'"a - b"', b'"x [1] = y"', b"' '"]
TOKEN = re.compile(rb"""(?P<comment>\#[^\n]*)
                     | (?P<string>"(?:\\.|[^"\\\n])*")
                     | (?P<number>'(?:\\.|[^'\\\n])?' | \d+(?:\.\d+)? | true\b | false\b)
                     | (?P<type>(?:int|double|boolean|character|string|void)\b)
                     | (?P<jump>(?:break|continue|return)\b)
                     | (?P<keyword>(?:if|elseif|else|while|for|print|exit)\b)
                     | (?P<name>\w+)
                     | (?P<assignment>\+= | -= | =(?!=))
                     | (?P<step>\+\+ | --)
                     | (?P<operator>\|\| | && | [=!<>]= | [-+*/<>])
                     | (?P<blank>\s+) | .""", re.DOTALL | re.VERBOSE)

DIAGNOSTIC = re.compile(rb"(Lexer|Syntax|Semantic) error in input\.krl( at line \d+)?(: .|$)"
                        rb"|Compilation error: .", re.DOTALL)
INTERNAL = re.compile(rb"Internal error: |krelcc: \S+:\d+: .*: Assertion `.*' failed\.$", re.DOTALL)


# Damage: each takes the random source, a program and another one, and gives a program


def flip_byte(random, data, _):
    at = random.randrange(len(data))
    return data[:at] + bytes([random.randrange(256)]) + data[at + 1:]


def insert_bytes(random, data, _):
    at = random.randrange(len(data) + 1)
    return data[:at] + random.randbytes(random.randrange(1, 5)) + data[at:]


def cut_bytes(random, data, _):
    at = random.randrange(len(data))
    return data[:at] + data[at + random.choice([1, 1, 2, 5, 40, len(data)]):]


def splice(random, data, other):
    return data[:random.randrange(len(data))] + other[random.randrange(len(other)):]


def on_pieces(split, join):
    """Makes damage to whole programs out of damage to lists of pieces."""
    def lift(change):
        def damage(random, data, other):
            pieces = split(data)
            change(random, pieces, split(other))
            return join(pieces)
        return damage
    return lift


on_tokens = on_pieces(lambda data: [match[0] for match in TOKEN.finditer(data)], b"".join)
on_lines = on_pieces(lambda data: data.split(b"\n"), b"\n".join)


def drop(random, pieces, _):
    del pieces[random.randrange(len(pieces))]


def double(random, pieces, _):
    at = random.randrange(len(pieces))
    pieces.insert(at, pieces[at])


def swap(random, pieces, _):
    first, second = random.randrange(len(pieces)), random.randrange(len(pieces))
    pieces[first], pieces[second] = pieces[second], pieces[first]


def borrow(random, pieces, others):
    pieces[random.randrange(len(pieces))] = random.choice(others)


def replace_token(random, pieces, _):
    pieces[random.randrange(len(pieces))] = b" " + random.choice(TOKENS) + b" "


def insert_token(random, pieces, _):
    pieces.insert(random.randrange(len(pieces) + 1), b" " + random.choice(TOKENS) + b" ")


def replace_by_alike(random, pieces, others):
    """One token gives way to another of its kind, so that the syntax often survives."""
    at = random.randrange(len(pieces))
    kind = TOKEN.match(pieces[at]).lastgroup
    alike = [piece for piece in pieces + others + TOKENS if TOKEN.match(piece).lastgroup == kind]
    pieces[at] = random.choice(alike)


def repeat_tokens(random, pieces, _):
    """A long run of the same few tokens, to go deep."""
    at = random.randrange(len(pieces))
    run = pieces[at:at + random.randrange(1, 5)] + [b" "]
    pieces[at:at] = run * random.choice([10, 100, 1000, 5000])


DAMAGES = [
    (1, flip_byte), (1, insert_bytes), (1, cut_bytes), (1, splice), (1, on_tokens(drop)),
    (1, on_tokens(double)), (1, on_tokens(swap)), (1, on_tokens(borrow)),
    (2, on_tokens(replace_token)), (2, on_tokens(insert_token)), (16, on_tokens(replace_by_alike)),
    (1, on_tokens(repeat_tokens)), (2, on_lines(drop)), (3, on_lines(double)), (3, on_lines(swap)),
    (3, on_lines(borrow)),
]


def mutant(number, programs):
    random = random_module.Random(number)
    data = random.choice(programs)
    weights, damages = zip(*DAMAGES)
    for damage in random.choices(damages, weights, k=random.choice([1, 1, 1, 2, 2, 4])):
        data = damage(random, data, random.choice(programs)) or b"\n"
    return data


# Runs


def fault(completed):
    """What is wrong with how a run ended; None if nothing is."""
    lines = completed.stderr.split(b"\n")[:-1]
    internal = [line for line in lines if INTERNAL.match(line)]
    for line in lines:
        if not (DIAGNOSTIC.match(line) or line in internal):
            return f"standard error has the line {line[:200]!r}"
    if completed.returncode == 0:
        return f"success with the message {lines[0][:200]!r}" if lines else None
    if completed.returncode == 1:
        return None if lines and not internal else "failure without a diagnostic"
    if completed.returncode == -6:
        return None if internal else "aborted without a message"
    return f"ended with {completed.returncode}"


def limit_time():
    resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))


def compile_mutant(krelcc, source, options):
    """What is wrong with how krelcc takes a program; None if nothing is."""
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        (directory / "bin").mkdir()
        (directory / "tmp").mkdir()
        (directory / "bin" / "gcc").symlink_to(shutil.which("true"))
        (directory / "input.krl").write_bytes(source)
        environment = {"PATH": str(directory / "bin"), "TMPDIR": str(directory / "tmp"),
                       "LC_ALL": "C", "ASAN_OPTIONS": "detect_leaks=0"}
        try:
            completed = subprocess.run([krelcc, "input.krl", *options], cwd=directory,
                                       env={**os.environ, **environment}, timeout=TIMEOUT_SECONDS,
                                       stdin=subprocess.DEVNULL, capture_output=True, check=False,
                                       preexec_fn=limit_time)
        except subprocess.TimeoutExpired:
            return "no end in sight"
        left = os.listdir(directory / "tmp")
    return f"left {left} behind" if left else fault(completed)


def check(krelcc, programs, keep, number):
    """The line to print about a mutant; None if krelcc takes it well."""
    source = mutant(number, programs)
    dumps = ["--ast-dump", "--ast-semantic-dump", "--ir-dump", "--asm-dump"]
    problem = compile_mutant(krelcc, source, dumps if number % 4 == 0 else [])
    if problem is None:
        return None
    keep.mkdir(parents=True, exist_ok=True)
    kept = keep / f"mutant-{number}.krl"
    kept.write_bytes(source)
    return f"FAILED seed {number}, kept as {kept}: {problem}"


def collect(folders):
    """The programs to damage, in an order that depends on their names only."""
    paths = sorted(path for folder in folders for path in folder.rglob("*.krl"))
    found = [path.read_bytes() for path in paths]
    models = [generator.generate(number)[0] for number in range(MODEL_PROGRAMS)]
    return [data for data in found if 0 < len(data) <= MAX_SOURCE] + models


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--krelcc", required=True,
                        type=lambda text: str(pathlib.Path(text).resolve()))
    parser.add_argument("--count", type=int, default=1000)
    parser.add_argument("--seed", type=int, default=0, help="number of the first mutant")
    parser.add_argument("--keep", type=pathlib.Path, default=pathlib.Path("mutate-failures"),
                        help="folder for the mutants that fail")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("folders", nargs="*", type=pathlib.Path, metavar="FOLDER")
    options = parser.parse_args()
    programs = collect(options.folders)
    numbers = range(options.seed, options.seed + options.count)
    failures = 0
    with concurrent.futures.ProcessPoolExecutor(options.jobs) as pool:
        for line in pool.map(functools.partial(check, options.krelcc, programs, options.keep),
                             numbers, chunksize=MUTANTS_PER_TASK):
            if line:
                failures += 1
                print(line, flush=True)
    print(f"{options.count} mutants of {len(programs)} programs from seed {options.seed}, "
          f"{failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
