#!/usr/bin/env python3
"""The memory of strings: bounded in long loops, safe in deep recursion, a clean end when it is out.

The loops run for a few seconds; for 100 million rounds set KREL_ROUNDS=100000000.
"""

import os
import pathlib
import resource
import unittest

from harness import ABORTED, MEGABYTE, RuntimeTest, error_line, main_with

ROUNDS = int(os.environ.get("KREL_ROUNDS", "20000000"))

# Makes five strings in each round.
CHURN = """\
    for (int round = 0; round < {rounds}; round++) {{
        string number = (string) round;
        string line = "number " + number;
        print(line, " of ", round, "\\n");
    }}
"""

# Builds a string of 100 megabytes, one fiftieth at a time.
GROW = """\
    string piece = "0123456789abcde.";
    for (int doubling = 0; doubling < 17; doubling++) {
        piece = piece + piece;
    }
    string grown = "";
    for (int pieces = 0; pieces < 50; pieces++) {
        grown = grown + piece;
    }
"""

# Prints the mark, and then so much that the program has to wait for a reader before it ends.
WAIT = """\
    print("\\nworked\\n");
    for (int filler = 0; filler < 50000; filler++) {
        print("ten bytes.");
    }
"""

DESCEND = """\
void descend(int depth) {
    string number = (string) depth;
    string held = "frame " + number;
    if (depth > 0) {
        descend(depth - 1);
    } else {
        work();
    }
    print(held, "\\n");
}
"""

# Ends only when memory does.
EXHAUST = """\
    string text = "some text";
    for (;;) {
        text = text + text;
    }
"""


def peak_resident_bytes(process):
    """The most memory that a running process has had so far."""
    for line in pathlib.Path(f"/proc/{process.pid}/status").read_text().splitlines():
        if line.startswith("VmHWM:"):
            return int(line.split()[1]) * 1024
    raise RuntimeError("the process has no memory any more")


def read_past(stream, mark):
    """Reads, and drops, at least all bytes up to a mark."""
    tail = b""
    while mark not in tail:
        chunk = os.read(stream.fileno(), 1 << 16)
        if not chunk:
            raise EOFError("the output ended before the mark")
        tail = tail[-len(mark):] + chunk


class MemoryTest(RuntimeTest):
    def peak(self, statements):
        """The most memory that a program has while it executes the statements."""
        process = self.start(self.compile(main_with(statements + WAIT)))
        read_past(process.stdout, b"\nworked\n")
        peak = peak_resident_bytes(process)
        outcome = self.finish(process)
        self.assertEqual((outcome.status, outcome.stderr), (0, b""))
        return peak

    def output(self, source, **options):
        """What a program prints that comes to a good end."""
        outcome = self.run_source(source, **options)
        self.assertEqual((outcome.status, outcome.stderr), (0, b""))
        return outcome.stdout


class Bounded(MemoryTest):
    def test_loop_that_prints_and_joins_stays_small(self):
        self.assertLess(self.peak(CHURN.format(rounds=ROUNDS)), 8 * MEGABYTE)

    def test_loop_runs_on_under_a_limit_that_it_would_soon_exceed(self):
        source = main_with(CHURN.format(rounds=1000000))
        for limit in (resource.RLIMIT_AS, resource.RLIMIT_DATA):
            printed = self.output(source, limits={limit: 24 * MEGABYTE})
            self.assertEqual(printed.splitlines()[-1], b"number 999999 of 999999")

    def test_little_address_space_is_enough_whatever_the_stack_may_take(self):
        source = main_with(CHURN.format(rounds=100000))
        for stack in (MEGABYTE, 8 * MEGABYTE, 64 * MEGABYTE):
            printed = self.output(source, limits={resource.RLIMIT_STACK: stack,
                                                  resource.RLIMIT_AS: 20 * MEGABYTE})
            self.assertEqual(printed.splitlines()[-1], b"number 99999 of 99999")

    def test_growing_string_takes_a_few_times_its_length(self):
        self.assertLess(self.peak(GROW), 500 * MEGABYTE)


class Kept(MemoryTest):
    def test_grown_string_is_whole(self):
        printed = self.output(main_with(GROW + "    print(grown);"))
        # Not assertEqual: nobody wants to see the difference.
        self.assertTrue(printed == b"0123456789abcde." * (100 * MEGABYTE // 16))

    def test_strings_in_deep_frames_survive(self):
        work = "void work() {\n" + CHURN.format(rounds=1000000) + "}\n"
        frames = 40000
        printed = self.output(work + DESCEND + main_with(f"    descend({frames});"),
                              limits={resource.RLIMIT_STACK: 16 * MEGABYTE})
        self.assertEqual(printed.splitlines()[1000000:],
                         [b"frame %d" % depth for depth in range(frames + 1)])

    def test_strings_with_a_minus_before_them_survive(self):
        # Minus negates a string's address, so that twice of it is the string again.
        count = 1000
        printed = self.output(main_with(f"""\
    string hidden[{count}];
    for (int i = 0; i < {count}; i++) {{
        string digits = (string) i;
        string text = "negated " + digits;
        hidden[i] = -text;
    }}
""" + CHURN.format(rounds=100000) + f"""\
    for (int j = 0; j < {count}; j++) {{
        print(-hidden[j], "\\n");
    }}"""))
        self.assertEqual(printed.splitlines()[-count:], [b"negated %d" % i for i in range(count)])

    def test_strings_in_an_array_survive(self):
        count = 100000
        printed = self.output(main_with(f"""\
    string kept[{count}];
    for (int i = 0; i < {count}; i++) {{
        string number = (string) i;
        kept[i] = "kept " + number;
    }}
    for (int j = 0; j < {count}; j++) {{
        print(kept[j], "\\n");
    }}"""))
        self.assertEqual(printed.splitlines(), [b"kept %d" % i for i in range(count)])


class Exhausted(MemoryTest):
    def assert_ends(self, source, **options):
        self.assertEqual(self.run_source(source, **options),
                         (ABORTED, b"before\n", error_line("out of memory")))

    def test_limited_addresses(self):
        self.assert_ends(main_with('    print("before\\n");\n' + EXHAUST),
                         limits={resource.RLIMIT_AS: 100 * MEGABYTE})

    def test_limited_data(self):
        self.assert_ends(main_with('    print("before\\n");\n' + EXHAUST),
                         limits={resource.RLIMIT_DATA: 100 * MEGABYTE})

    def test_many_small_strings(self):
        self.assert_ends(main_with("""\
    string kept[400000];
    print("before\\n");
    for (int i = 0; i < 400000; i++) {
        string number = (string) i;
        kept[i] = "kept " + number;
    }
    print("after\\n");"""), limits={resource.RLIMIT_DATA: 8 * MEGABYTE})


if __name__ == "__main__":
    unittest.main()
