#!/usr/bin/env python3
"""Measures krelcc against the native build, other compilers and itself, and prints tables.

Usage: script/bench [--quick] [--only PART]... [--edits N] [--save]

Parts: sizes (programs of 20 lines to a million, with all the targets on them), growth (time at 2N
over time at N for each input that is large in one way), native (our native build against gcc's),
machine (programs that krel executes itself), json, diagnostics, phases, lsp (from an edit to the
diagnostics, in milliseconds of wall time), debug (steps forward and back, likewise).

Compared commands are run in turn, A B A B ..., and a ratio is the median of the ratios of the
rounds: what slows the machine down for a while meets both. `own` is krelcc with a `gcc` that does
nothing first on the search path; its time is not subtracted. Times are CPU time, user and system,
where nothing else is said. Ratios are compared with those of bench/baseline.json, which --save
rewrites: they are comparable between machines, seconds are not.
"""

import argparse
import collections
import json
import os
import pathlib
import subprocess
import sys
import tempfile

import debug
import inputs
import lsp
import machine
import program
from measuring import Workshop, in_turn, median, ratio, require

BASELINE = pathlib.Path(__file__).resolve().parent / "baseline.json"
TOOLS = ["gcc", "as", "tcc", "clang", "strace"]
SEED = 1

# Lines and rounds.
SIZES = {20: 41, 100: 21, 1_000: 11, 10_000: 7, 100_000: 5, 1_000_000: 1}
QUICK_SIZES = {20: 21, 100: 5, 1_000: 5, 10_000: 3}
# Above this gcc takes minutes for the C program, and gigabytes.
MOST_LINES_FOR_GCC = 100_000
# The rounds of an input that is large in one way are as many as fit into the time, within limits.
GROWTH_SECONDS = 1.0
GROWTH_ROUNDS = range(3, 16)
JSON_LINES = 10_000
DIAGNOSTICS = 20_000
TRACED_DIAGNOSTICS = 1_000
PHASE_LINES = 10_000
NESTED_STATEMENTS = 50

# What is measured, the greatest ratio that is wanted (None: it is only shown), and the ratio.
Row = collections.namedtuple("Row", "what target measured")


def short(number):
    """10000 as 10k, 1000000 as 1M."""
    for unit, factor in (("M", 1_000_000), ("k", 1_000)):
        if number >= factor and number % factor == 0:
            return f"{number // factor}{unit}"
    return str(number)


def write_program(workshop, lines):
    krel, c = program.generate(lines=lines, seed=SEED)
    for suffix, text in (("krl", krel), ("c", c)):
        pathlib.Path(workshop.file(f"program{lines}.{suffix}")).write_text(text, encoding="ascii")
    return f"program{lines}"


def measure_size(workshop, lines, rounds):
    """One program, with every way of compiling it in turn."""
    name = write_program(workshop, lines)
    workshop.own(f"{name}.krl", "--asm-dump")
    commands = {
        "native": ["gcc", f"{name}.s", workshop.runtime, "-o", "native"],
        "whole": [workshop.krelcc, f"{name}.krl", "-o", "whole"],
        "tcc": ["tcc", "-c", f"{name}.c", "-o", "tcc.o"],
        "assembler": ["as", f"{name}.s", "-o", "as.o"],
    }
    if lines <= MOST_LINES_FOR_GCC:
        commands["gcc"] = ["gcc", "-O0", f"{name}.c", "-o", "gcc-O0"]
    runs = {which: lambda command=command: workshop.run(command)
            for which, command in commands.items()}
    return in_turn(rounds, own=lambda: workshop.own(f"{name}.krl"), **runs)


SIZE_TARGETS = {
    ("whole / native build, wall", 20): 1.05,
    ("own / native build", 20): 0.035,
    ("own / native build", 10_000): 0.07,
    ("own / native build", 100_000): 0.06,
    ("own / tcc -c", 100_000): 1.0,
    ("whole / gcc -O0", 100_000): 0.15,
    ("own peak memory / the assembler's", 100_000): 1.0,
}


COMPARISONS = [
    ("whole / native build, wall", "whole", "native", "wall"),
    ("own / native build", "own", "native", "cpu"),
    ("own / tcc -c", "own", "tcc", "cpu"),
    ("whole / gcc -O0", "whole", "gcc", "cpu"),
    ("own peak memory / the assembler's", "own", "assembler", "peak"),
]


def size_rows(workshop, quick):
    rows = []
    shown = ["own", "native", "whole", "tcc", "gcc"]
    print(f"\nCPU ms; peak memory in KB\n{'lines':>7}" +
          "".join(f" {which:>9}" for which in [*shown, "own peak", "as peak"]))
    for lines, rounds in (QUICK_SIZES if quick else SIZES).items():
        samples = measure_size(workshop, lines, rounds)
        times = "".join(f" {median(samples[which], 'cpu') * 1e3:9.2f}" if which in samples else
                        f" {'':9}" for which in shown)
        peaks = "".join(f" {median(samples[which], 'peak'):9.0f}" for which in ("own", "assembler"))
        print(f"{short(lines):>7}{times}{peaks}", flush=True)
        rows += [Row(f"{what}, {short(lines)} lines", SIZE_TARGETS.get((what, lines)),
                     ratio(samples[above], samples[below], field))
                 for what, above, below, field in COMPARISONS if below in samples]
    return rows


def growth_inputs(quick):
    """(name, unit, size, text of a size, exit status) of everything that has to grow linearly."""
    shrink = 10 if quick else 1
    for entry in inputs.INPUTS:
        yield (entry.name, entry.unit, entry.size // shrink, entry.text,
               0 if entry.compiles else 1)
    for nesting in inputs.NESTINGS:
        yield (nesting.name, "levels", nesting.deepest(),
               lambda depth, nesting=nesting: nesting.text(depth, NESTED_STATEMENTS), 0)


def growth_rows(workshop, quick):
    rows = []
    print(f"\n{'own ms':>9} {'peak MB':>8}   at")
    for name, unit, size, text, status in growth_inputs(quick):
        for file, n in (("half.krl", size // 2), ("full.krl", size)):
            pathlib.Path(workshop.file(file)).write_text(text(n), encoding="ascii")
        first = workshop.own("full.krl", status=status).cpu
        rounds = min(max(int(GROWTH_SECONDS / first), GROWTH_ROUNDS[0]), GROWTH_ROUNDS[-1])
        samples = in_turn(rounds,
                          half=lambda: workshop.own("half.krl", status=status),
                          full=lambda: workshop.own("full.krl", status=status))
        print(f"{median(samples['full'], 'cpu') * 1e3:9.1f}"
              f" {median(samples['full'], 'peak') / 1024:8.1f}   {size} {unit} ({name})",
              flush=True)
        rows.append(Row(f"own at 2N / at N, {name}, 2N = {size}", 2.2,
                        ratio(samples["full"], samples["half"], "cpu")))
    return rows


# Rounds of the comparisons of native builds, by lines.
NATIVE_SIZES = {20: 41, 10_000: 11, 100_000: 5}
QUICK_NATIVE_SIZES = {20: 21, 10_000: 3}

NATIVE_TARGETS = {
    ("our native build / gcc's", 20): 0.05,
    ("our native build / gcc's", 10_000): 0.08,
    ("our native build / gcc's", 100_000): 0.08,
    ("whole with ours / gcc -O0, wall", 20): 0.06,
    ("whole with ours / gcc -O0", 100_000): 0.04,
    ("whole with ours / whole tcc", 20): 0.8,
    ("whole with ours / whole tcc", 100_000): 2.0,
    ("krel run / tcc -run, wall", 20): 1.2,
    ("start of a program, ours / linked by gcc, wall", 20): 0.4,
    ("peak memory of ours / the assembler's", 100_000): 1.0,
}

NATIVE_COMPARISONS = [
    ("our native build / gcc's", "ours", "native", "cpu"),
    ("whole with ours / gcc -O0, wall", "whole", "gcc", "wall"),
    ("whole with ours / gcc -O0", "whole", "gcc", "cpu"),
    ("whole with ours / whole tcc", "whole", "tcc", "cpu"),
    ("krel run / tcc -run, wall", "krel run", "tcc -run", "wall"),
    ("start of a program, ours / linked by gcc, wall", "program", "linked by gcc", "wall"),
    ("peak memory of ours / the assembler's", "ours", "assembler", "peak"),
]


def measure_native(workshop, lines, rounds):
    """One program, built by all as assembly and as a whole, and then run: what takes a fraction of
    a millisecond is not measured between what takes a second, which empties the caches."""
    name = write_program(workshop, lines)
    workshop.own(f"{name}.krl", "--asm-dump")
    link = [f"{name}.s", workshop.runtime, "-o"]
    workshop.run(["gcc", *link, "by-gcc"])
    workshop.run([f"{workshop.native}/gcc", *link, "by-us"])
    builds = {
        "ours": [f"{workshop.native}/gcc", *link, "ours"],
        "native": ["gcc", *link, "native"],
        "assembler": ["as", f"{name}.s", "-o", "as.o"],
        "tcc": ["tcc", f"{name}.c", "-o", "by-tcc"],
        "gcc": ["gcc", "-O0", f"{name}.c", "-o", "gcc-O0"],
    }
    starts = {
        "krel run": [workshop.krel, "run", f"{name}.krl"],
        "tcc -run": ["tcc", "-run", f"{name}.c"],
        "program": ["./by-us"],
        "linked by gcc": ["./by-gcc"],
    }

    def runs(commands):
        return {which: lambda command=command: workshop.run(command)
                for which, command in commands.items()}

    whole = [workshop.krelcc, f"{name}.krl", "-o", "whole"]
    return (in_turn(rounds, whole=lambda: workshop.run(whole, before=workshop.native),
                    **runs(builds)) |
            in_turn(rounds, **runs(starts)))


def native_growth_rows(workshop, quick):
    rows = []
    for name, unit, size, text, status in growth_inputs(quick):
        if status != 0:
            continue
        for file, n in (("half", size // 2), ("full", size)):
            pathlib.Path(workshop.file(f"{file}.krl")).write_text(text(n), encoding="ascii")
            workshop.own(f"{file}.krl", "--asm-dump")
        runs = {file: lambda file=file: workshop.run([f"{workshop.native}/gcc", f"{file}.s",
                                                      workshop.runtime, "-o", "ours"])
                for file in ("half", "full")}
        samples = in_turn(GROWTH_ROUNDS[0] if quick else 7, **runs)
        rows.append(Row(f"our native build at 2N / at N, {name}", 2.2,
                        ratio(samples["full"], samples["half"], "cpu")))
    return rows


def native_rows(workshop, quick):
    rows = []
    shown = ["ours", "native", "whole", "tcc", "gcc"]
    print(f"\nCPU ms; the whole is with our native build\n{'lines':>7}" +
          "".join(f" {which:>9}" for which in shown))
    for lines, rounds in (QUICK_NATIVE_SIZES if quick else NATIVE_SIZES).items():
        samples = measure_native(workshop, lines, rounds)
        print(f"{short(lines):>7}" +
              "".join(f" {median(samples[which], 'cpu') * 1e3:9.2f}" for which in shown),
              flush=True)
        rows += [Row(f"{what}, {short(lines)} lines", NATIVE_TARGETS[what, lines],
                     ratio(samples[above], samples[below], field))
                 for what, above, below, field in NATIVE_COMPARISONS
                 if (what, lines) in NATIVE_TARGETS]
    return rows + native_growth_rows(workshop, quick)


def json_rows(workshop, quick):
    """What the dump adds to a run.

    Whole runs are shown besides: clang's ends with the dump, krelcc's goes on to the executable.
    """
    name = write_program(workshop, JSON_LINES)
    check = ["clang", "-w", "-fsyntax-only", f"{name}.c"]
    samples = in_turn(
        5 if quick else 11,
        own=lambda: workshop.own(f"{name}.krl", "--ast-dump"),
        own_plain=lambda: workshop.own(f"{name}.krl"),
        clang=lambda: workshop.run([*check, "-Xclang", "-ast-dump=json"], output="clang.json"),
        clang_plain=lambda: workshop.run(check))
    clang_bytes = os.path.getsize(workshop.file("clang.json"))
    own_bytes = os.path.getsize(workshop.file(f"{name}.ast.json"))
    cpu = {run: median(samples[run], "cpu") for run in samples}
    print(f"\nJSON of {JSON_LINES} lines: {own_bytes / 1e6:.1f} MB in"
          f" {cpu['own'] * 1e3:.1f} ms, without {cpu['own_plain'] * 1e3:.1f} ms; clang"
          f" {clang_bytes / 1e6:.1f} MB in {cpu['clang'] * 1e3:.1f} ms, without"
          f" {cpu['clang_plain'] * 1e3:.1f} ms", flush=True)
    per_byte = clang_bytes / own_bytes
    return [Row("CPU per MB of JSON dump / clang's", 0.3,
                (cpu["own"] - cpu["own_plain"]) / (cpu["clang"] - cpu["clang_plain"]) * per_byte),
            Row("the same of whole runs", None,
                ratio(samples["own"], samples["clang"], "cpu") * per_byte)]


def write_calls(workshop):
    """Write calls on standard error for one diagnostic."""
    source = inputs.semantic_errors(TRACED_DIAGNOSTICS)
    pathlib.Path(workshop.file("traced.krl")).write_text(source, encoding="ascii")
    workshop.run(["strace", "-f", "-o", "trace", "-e", "trace=write,writev", workshop.krelcc,
                  "traced.krl"], status=1)
    trace = pathlib.Path(workshop.file("trace")).read_text(errors="replace")
    calls = sum("write(2," in line or "writev(2," in line for line in trace.splitlines())
    return calls / TRACED_DIAGNOSTICS


def diagnostic_rows(workshop, quick):
    source = inputs.semantic_errors(DIAGNOSTICS)
    c = source.replace("void main()", "int main(void)")
    for suffix, text in (("krl", source), ("c", c)):
        pathlib.Path(workshop.file(f"errors.{suffix}")).write_text(text, encoding="ascii")
    samples = in_turn(
        3 if quick else 7,
        own=lambda: workshop.own("errors.krl", status=1),
        clang=lambda: workshop.run(["clang", "-fsyntax-only", "-ferror-limit=0", "errors.c"],
                                   status=1))
    print(f"\n{DIAGNOSTICS} diagnostics: {median(samples['own'], 'cpu') * 1e3:.1f} ms, clang"
          f" {median(samples['clang'], 'cpu') * 1e3:.1f} ms", flush=True)
    return [Row("write calls per diagnostic", 1.0, write_calls(workshop)),
            Row("CPU per diagnostic / clang's", 0.05,
                ratio(samples["own"], samples["clang"], "cpu"))]


def phase_rows(workshop, build):
    """Each phase's share of the sum of all; no targets."""
    name = write_program(workshop, PHASE_LINES)
    report = subprocess.run(
        [build / "bench" / "krel_phases", "--benchmark_format=json"], check=True,
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
        env={**os.environ, "KREL_BENCH_SOURCE": workshop.file(f"{name}.krl")}).stdout
    medians = {entry["name"].split("/")[0]: entry["real_time"]
               for entry in json.loads(report)["benchmarks"]
               if entry["aggregate_name"] == "median"}
    total = sum(medians.values())
    print(f"\nOwn CPU by phase, {short(PHASE_LINES)} lines:")
    for phase, milliseconds in medians.items():
        print(f"{milliseconds:9.2f} ms   {phase}")
    return [Row(f"share of own CPU, {phase}", None, milliseconds / total)
            for phase, milliseconds in medians.items()]


# Edits of a program of 1,000 lines, and of one of 5 MB.
EDITS = 4_000
QUICK_EDITS = 400
LARGE_LINES = 185_000
LARGE_EDITS = 12


def lsp_rows(workshop, quick, edits):
    edits = edits or (QUICK_EDITS if quick else EDITS)
    session = lsp.session(workshop.krel, 1_000, edits)
    usual, slow = lsp.median_and_p95(session.times)
    print(f"\nkrel lsp, 1k lines: opened in {session.opening:.1f} ms; {len(session.times)} edits,"
          f" {session.cpu:.1f} ms of CPU time each, the slowest {max(session.times):.1f} ms;"
          f" {session.early} KB of memory after a tenth of them, {session.late} KB at the end",
          flush=True)
    rows = [Row("ms from edit to diagnostics, 1k lines, median", 10, usual),
            Row("ms from edit to diagnostics, 1k lines, 95 of 100", 10, slow),
            Row("CPU ms of an edit, 1k lines", None, session.cpu),
            Row("memory at the end / after a tenth of the edits", 1.1,
                session.late / session.early)]
    if not quick:
        large = lsp.session(workshop.krel, LARGE_LINES, LARGE_EDITS)
        print(f"krel lsp, {short(LARGE_LINES)} lines (5 MB): opened in {large.opening:.0f} ms;"
              f" {large.late / 1024:.0f} MB of memory", flush=True)
        rows.append(Row("CPU ms of an edit, 5 MB", None, large.cpu))
    return rows


def print_table(rows, baseline):
    print(f"\n{'what':<58} {'target':>7} {'measured':>9}  {'verdict':<7} {'moved':>7}")
    for row in rows:
        before = baseline.get(row.what)
        moved = f"{(row.measured / before - 1) * 100:+.0f}%" if before else ""
        target = f"{row.target:g}" if row.target is not None else ""
        verdict = "" if row.target is None else "met" if row.measured <= row.target else "MISSED"
        print(f"{row.what:<58} {target:>7} {row.measured:9.3f}  {verdict:<7} {moved:>7}")


def main():
    parser = argparse.ArgumentParser(prog="script/bench", description=__doc__.splitlines()[0])
    parts = ["sizes", "growth", "native", "machine", "json", "diagnostics", "phases", "lsp",
             "debug"]
    parser.add_argument("--build", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--quick", action="store_true",
                        help="up to 10k lines, large inputs a tenth as large, fewer rounds")
    parser.add_argument("--only", action="append", choices=parts, metavar="PART",
                        help=f"one of: {', '.join(parts)}; may be repeated")
    parser.add_argument("--edits", type=int, metavar="N",
                        help=f"edits of a program of 1,000 lines by lsp ({EDITS} by default)")
    parser.add_argument("--save", action="store_true",
                        help="make the ratios measured now the new baseline")
    options = parser.parse_args()
    require(*TOOLS)
    wanted = options.only or parts
    baseline = json.loads(BASELINE.read_text()) if BASELINE.exists() else {}
    rows = []
    with tempfile.TemporaryDirectory() as directory:
        workshop = Workshop(options.build.resolve(), directory, os.environ["PATH"])
        measure = {
            "sizes": lambda: size_rows(workshop, options.quick),
            "growth": lambda: growth_rows(workshop, options.quick),
            "native": lambda: native_rows(workshop, options.quick),
            "machine": lambda: [Row(*row) for row in machine.measure(workshop, options.quick)],
            "json": lambda: json_rows(workshop, options.quick),
            "diagnostics": lambda: diagnostic_rows(workshop, options.quick),
            "phases": lambda: phase_rows(workshop, options.build.resolve()),
            "lsp": lambda: lsp_rows(workshop, options.quick, options.edits),
            "debug": lambda: [Row(*row) for row in debug.measure(workshop.krel)],
        }
        for part in parts:
            if part in wanted:
                rows += measure[part]()
    print(f"\nload of the machine (1, 5, 15 minutes): {os.getloadavg()}, {os.cpu_count()} CPUs")
    print_table(rows, baseline)
    if options.save:
        baseline.update({row.what: round(row.measured, 4) for row in rows})
        BASELINE.write_text(json.dumps(baseline, indent=2) + "\n")
    return 0


if __name__ == "__main__":
    sys.exit(main())
