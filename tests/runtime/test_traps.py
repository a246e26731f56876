#!/usr/bin/env python3
"""Faults of the machine: the output is there, a line says what happened, the signal ends it."""

import fcntl
import os
import resource
import signal
import subprocess
import unittest

from harness import (ABORTED, DIVIDED_BY_ZERO, FAULTED, MEGABYTE, RuntimeTest, error_line,
                     main_with)

UNLIMITED = {resource.RLIMIT_STACK: resource.RLIM_INFINITY}
SMALL = {resource.RLIMIT_STACK: MEGABYTE // 4}

DIVIDE = "int divide(int left, int right) { return left / right; }\n"

# Integer literals end at 32 bits.
SMALLEST = """\
    int smallest = 1;
    for (int i = 0; i < 63; i++) {
        smallest = smallest * 2;
    }
"""

DIVISION_BY_ZERO = "    int zero = 0; zero = 1 / zero;\n"
OVERFLOW = SMALLEST + "    int one = -1; one = smallest / one;\n"

RECURSE = "void recurse(int depth) { recurse(depth + 1); }\n"
RECURSE_PRINTING = """\
void recurse(int depth) {
    string number = (string) depth;
    string held = "depth " + number;
    print(held, "\\n");
    recurse(depth + 1);
}
"""
RECURSE_WITH_ARRAY = """\
void recurse(int depth) {
    int numbers[20000];
    numbers[0] = depth;
    recurse(depth + 1);
}
"""


class TrapTest(RuntimeTest):
    def assert_trap(self, statements, status, what, functions="", **options):
        source = functions + main_with('    print("before\\n", 1, " and ");\n' + statements
                                       + '    print("after\\n");')
        self.assertEqual(self.run_source(source, **options),
                         (status, b"before\n1 and ", error_line(what)))


class Division(TrapTest):
    def test_by_zero(self):
        self.assert_trap(DIVISION_BY_ZERO, DIVIDED_BY_ZERO, "integer division by zero")

    def test_zero_by_zero(self):
        self.assert_trap("    int zero = 0; zero = zero / zero;\n", DIVIDED_BY_ZERO,
                         "integer division by zero")

    def test_smallest_by_zero(self):
        self.assert_trap(SMALLEST + "    smallest = smallest / 0;\n", DIVIDED_BY_ZERO,
                         "integer division by zero")

    def test_in_a_function(self):
        self.assert_trap("    int result = divide(1, 0);\n", DIVIDED_BY_ZERO,
                         "integer division by zero", functions=DIVIDE)

    def test_overflow(self):
        self.assert_trap(OVERFLOW, DIVIDED_BY_ZERO, "integer division overflow")

    def test_overflow_in_a_function(self):
        self.assert_trap(SMALLEST + "    int one = -1; int result = divide(smallest, one);\n",
                         DIVIDED_BY_ZERO, "integer division overflow", functions=DIVIDE)

    def test_with_little_or_endless_stack(self):
        for limits in (SMALL, UNLIMITED):
            self.assert_trap(DIVISION_BY_ZERO, DIVIDED_BY_ZERO, "integer division by zero",
                             limits=limits)


class StackOverflow(TrapTest):
    def assert_overflow(self, functions, statements="    recurse(0);\n", **options):
        self.assert_trap(statements, FAULTED, "stack overflow", functions=functions, **options)

    def test_endless_recursion(self):
        self.assert_overflow(RECURSE)

    def test_endless_recursion_with_other_stacks(self):
        self.assert_overflow(RECURSE, limits=SMALL)
        self.assert_overflow(RECURSE, limits={resource.RLIMIT_STACK: 64 * MEGABYTE})

    def test_endless_recursion_without_a_limit_uses_up_the_addresses(self):
        self.assert_overflow(RECURSE, limits={**UNLIMITED, resource.RLIMIT_AS: 256 * MEGABYTE})

    def test_large_frames(self):
        self.assert_overflow(RECURSE_WITH_ARRAY)

    def test_frame_larger_than_the_stack(self):
        self.assert_overflow("void hold() { int numbers[4000000]; numbers[0] = 1; }\n",
                             "    hold();\n", limits={resource.RLIMIT_STACK: 8 * MEGABYTE})

    def test_in_the_runtime(self):
        for limits in ({}, SMALL):
            outcome = self.run_source(RECURSE_PRINTING + main_with("    recurse(0);"),
                                      limits=limits)
            self.assertEqual((outcome.status, outcome.stderr),
                             (FAULTED, error_line("stack overflow")))
            lines = outcome.stdout.splitlines(keepends=True)
            self.assertGreater(len(lines), 1000)
            self.assertEqual(lines, [b"depth %d\n" % depth for depth in range(len(lines))])

    def test_recursion_as_deep_as_the_stack_allows_is_none(self):
        count = """\
int count(int depth) {
    int rest = 0;
    if (depth > 0) {
        rest = count(depth - 1);
    }
    return rest + 1;
}
"""
        source = count + main_with("    int frames = count(999999);\n    print(frames);")
        self.assertEqual(self.run_source(source, limits=UNLIMITED), (0, b"1000000", b""))


class MemoryFault(TrapTest):
    def assert_fault(self, statements):
        self.assert_trap("    int numbers[3] = {1, 2, 3};\n" + statements, FAULTED,
                         "invalid memory access")

    def test_write_far_above(self):
        self.assert_fault("    numbers[1000000000] = 4;\n")

    def test_read_far_above(self):
        self.assert_fault("    int number = numbers[1000000000];\n")

    def test_write_far_below(self):
        self.assert_fault("    int far = -1000000000; numbers[far] = 4;\n")

    def test_read_far_below(self):
        self.assert_fault("    int far = -1000000000; int number = numbers[far];\n")

    def test_address_that_no_address_can_be(self):
        self.assert_fault(SMALLEST + "    int far = smallest / 16; numbers[far] = 4;\n")

    def test_text_that_is_none(self):
        # Plus before a string makes its address a number, and the sum of two is no string. Where
        # that is no possible address either, the kernel may call it a bus error.
        program = self.compile(main_with("""\
    print("before");
    string text = "text"; string address = +text;
    print(address + address);"""))
        outcome = self.run_program(program)
        self.assertIn(outcome.status, (FAULTED, -signal.SIGBUS))
        self.assertEqual(outcome[1:], (b"before", error_line("invalid memory access")))


class Signals(TrapTest):
    def test_shell_sees_what_it_expects(self):
        for statements, status in ((DIVISION_BY_ZERO, 128 + signal.SIGFPE),
                                   ("    recurse(0);\n", 128 + signal.SIGSEGV)):
            program = self.compile(RECURSE + main_with(statements))
            shell = subprocess.run(["sh", "-c", '"$0" 2>errors; echo $?', program],
                                   cwd=self.directory, capture_output=True, check=True)
            self.assertEqual(shell.stdout, b"%d\n" % status)

    def test_parent_that_blocked_or_ignored_them_changes_nothing(self):
        numbers = [signal.SIGFPE, signal.SIGSEGV, signal.SIGBUS, signal.SIGILL, signal.SIGABRT]

        def block():
            signal.pthread_sigmask(signal.SIG_BLOCK, numbers)

        def ignore():
            for number in numbers:
                signal.signal(number, signal.SIG_IGN)

        for prepare in (block, ignore):
            self.assert_trap(DIVISION_BY_ZERO, DIVIDED_BY_ZERO, "integer division by zero",
                             prepare=prepare)
            self.assert_trap("    recurse(0);\n", FAULTED, "stack overflow", functions=RECURSE,
                             prepare=prepare)
            self.assert_trap('    string text = "text";\n    for (;;) { text = text + text; }\n',
                             ABORTED, "out of memory", prepare=prepare,
                             limits={resource.RLIMIT_AS: 100 * MEGABYTE})

    def start_working(self, room):
        """Starts a program that prints 100 KB into a pipe with some room, and waits for the first
        byte."""
        process = self.start(self.compile(main_with("""\
    for (int i = 0; i < 10000; i++) {
        print(10000 + i, ",    ");
    }
    for (;;) { }""")), prepare=lambda: fcntl.fcntl(1, fcntl.F_SETPIPE_SZ, room))
        return process, os.read(process.stdout.fileno(), 1)

    def test_sent_from_outside(self):
        lines = b"".join(b"%d,    " % number for number in range(10000, 20000))
        for room in (MEGABYTE, MEGABYTE // 256):  # in the second the first write does not end
            process, first = self.start_working(room)
            process.send_signal(signal.SIGFPE)
            outcome = self.finish(process)
            self.assertEqual((outcome.status, outcome.stderr),
                             (DIVIDED_BY_ZERO, error_line("ended by a signal from outside")))
            printed = first + outcome.stdout
            self.assertEqual(printed, lines[:len(printed)])
            self.assertGreaterEqual(len(printed), min(room, 60000))

    def test_other_signals_end_it_without_a_word(self):
        process, _ = self.start_working(MEGABYTE)
        process.terminate()
        outcome = self.finish(process)
        self.assertEqual((outcome.status, outcome.stderr), (-signal.SIGTERM, b""))


if __name__ == "__main__":
    unittest.main()
