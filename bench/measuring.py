"""Runs commands and says what they took; compares commands by runs in turn."""

import collections
import pathlib
import shutil
import statistics
import subprocess

SOURCES = pathlib.Path(__file__).resolve().parent

# Seconds on the clock, seconds of CPU time (user and system), peak memory in KB, exit status.
Sample = collections.namedtuple("Sample", "wall cpu peak status")


class Workshop:
    """A working directory with the tools of the measurements, and the compiler under test."""

    def __init__(self, build, directory, search_path):
        self.directory = pathlib.Path(directory)
        self.krelcc = str(build / "krelcc")
        self.krel = str(build / "krel")
        self.runtime = str(build / "codegen" / "runtime.o")
        self.native = str(build / "native")
        self.search_path = search_path
        self.measure = self.directory / "measure"
        self.run_gcc("-O2", "-static", SOURCES / "measure.c", "-o", self.measure)
        self.stub = build_stub(self.directory / "stub")

    def run_gcc(self, *arguments):
        subprocess.run(["gcc", *arguments], check=True)

    def file(self, name):
        return str(self.directory / name)

    def run(self, command, before=None, status=0, output="out"):
        """Runs a command in the directory; its output goes to the files `output` and `err` there.
        `before` is a folder that comes first on the search path."""
        path = f"{before}:{self.search_path}" if before else self.search_path
        with open(self.file(output), "wb") as out, open(self.file("err"), "wb") as err:
            subprocess.run([self.measure, "result", *command], cwd=self.directory, check=True,
                           stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                           env={"PATH": path, "LC_ALL": "C"})
        fields = pathlib.Path(self.file("result")).read_text().split()
        sample = Sample(float(fields[0]), float(fields[1]), int(fields[2]), int(fields[3]))
        if sample.status != status:
            message = pathlib.Path(self.file("err")).read_bytes()[:2000].decode(errors="replace")
            raise RuntimeError(f"{command} ended with status {sample.status}:\n{message}")
        return sample

    def own(self, source, *options, status=0):
        """krelcc with a native compiler that does nothing."""
        return self.run([self.krelcc, source, *options], before=self.stub, status=status)


def build_stub(directory):
    """Makes a directory with a `gcc` that does nothing, to be put first on the search path."""
    directory.mkdir()
    subprocess.run(["gcc", "-O2", "-static", "-nostdlib", SOURCES / "doNothing.c",
                    "-o", directory / "gcc"], check=True)
    return str(directory)


def in_turn(rounds, **runs):
    """Calls each of the functions once per round; returns the samples by name."""
    samples = {name: [] for name in runs}
    for _ in range(rounds):
        for name, run in runs.items():
            samples[name].append(run())
    return samples


def ratio(left, right, field):
    """The median of the ratios of samples that were taken in the same round."""
    return statistics.median(getattr(a, field) / getattr(b, field) for a, b in zip(left, right))


def median(samples, field):
    return statistics.median(getattr(sample, field) for sample in samples)


def require(*programs):
    missing = [program for program in programs if shutil.which(program) is None]
    if missing:
        raise SystemExit(f"not installed: {', '.join(missing)} (script/bootstrap bench)")
