"""Programs that krel executes itself, against compiled ones and against CPython."""

import pathlib

from measuring import in_turn, median, ratio

PROGRAMS = ["sieve", "matrices", "fibonacci", "strings"]
SOURCES = pathlib.Path(__file__).resolve().parent / "machine"
ROUNDS, QUICK_ROUNDS = 11, 5

# The greatest ratios that are wanted: (what, above, below, field, target).
COMPARISONS = [
    ("without checks / compiled", "unchecked", "compiled", "cpu", 12.0),
    ("with checks / compiled", "checked", "compiled", "cpu", 20.0),
    ("with checks / CPython", "checked", "python", "cpu", 0.25),
    ("peak memory with checks / compiled", "checked", "compiled", "peak", 4.0),
]


def commands(workshop, name):
    """Every way of running a program; the last is the same program in Python."""
    source = str(SOURCES / f"{name}.krl")
    workshop.run([workshop.krel, "build", source, "-o", name])
    return {
        "compiled": [f"./{name}"],
        "unchecked": [workshop.krel, "run", "--allow=all", source],
        "checked": [workshop.krel, "run", "--checked", source],
        "python": ["python3", str(SOURCES / f"{name}.py")],
    }


def measure(workshop, quick):
    """(what, target, ratio) of all comparisons. The outputs are compared first."""
    rows = []
    shown = ["compiled", "unchecked", "checked", "python"]
    print("\nCPU ms; peak memory in KB\n" + " " * 11 +
          "".join(f" {which:>10}" for which in [*shown, "compiled", "checked"]))
    for name in PROGRAMS:
        ways = commands(workshop, name)
        outputs = {}
        for which, command in ways.items():
            workshop.run(command, output=which)
            outputs[which] = pathlib.Path(workshop.file(which)).read_bytes()
        if len(set(outputs.values())) != 1:
            raise RuntimeError(f"{name}: the outputs differ")
        runs = {which: lambda command=command: workshop.run(command)
                for which, command in ways.items()}
        samples = in_turn(QUICK_ROUNDS if quick else ROUNDS, **runs)
        times = "".join(f" {median(samples[which], 'cpu') * 1e3:10.2f}" for which in shown)
        peaks = "".join(f" {median(samples[which], 'peak'):10.0f}"
                        for which in ("compiled", "checked"))
        print(f"{name:<11}{times}{peaks}", flush=True)
        rows += [(f"{what}, {name}", target, ratio(samples[above], samples[below], field))
                 for what, above, below, field, target in COMPARISONS]
    return rows
