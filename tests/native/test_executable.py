#!/usr/bin/env python3
"""Executables of our own native build: loaded anywhere, and understood by other tools."""

import os
import re
import resource
import shutil
import subprocess
import unittest

from harness import KRELCC, NATIVE, NativeTest, RUNTIME, native_build, run

PROGRAM = """\
int half(int number) {
    return number / 2;
}

void stop() {
    exit(0);
}

void main() {
    string text = "half of 14 is ";
    print(text, half(14), "\\n");
    stop();
}
"""
FUNCTIONS = ["half", "stop", "main"]
PRINTED = "half of 14 is 7\n"

FAULT = """\
void fail(int number) {
    int numbers[3] = {1, 2, 3};
    numbers[1000000000] = number;
}

void main() {
    fail(4);
}
"""

# How many elements of arrays without values are not zero: of main's, and of a function's below it.
COUNTING = """\
int other() {{
    int numbers[{size}];
    int count = 0;
    for (int i = 0; i < {size}; i++) {{
        if (numbers[i] != 0) {{
            count++;
        }}
    }}
    return count;
}}

void main() {{
    int numbers[{size}];
    int count = 0;
    for (int i = 0; i < {size}; i++) {{
        if (numbers[i] != 0) {{
            count++;
        }}
    }}
    int others = other();
    print(count, " ", others);
}}
"""


class ExecutableTest(NativeTest):
    def compile(self, source, name="program"):
        self.write(f"{name}.krl", source)
        status, _, stderr = self.run_here(KRELCC, f"{name}.krl", environment={
            "PATH": f"{NATIVE.parent}:{os.environ['PATH']}"})
        self.assertEqual((status, stderr), (0, ""))
        program = self.directory / name
        self.assertFalse(native_build.needs_interpreter(program))
        return program

    def need(self, tool):
        if not shutil.which(tool):
            self.skipTest(f"there is no {tool}")

    def tool(self, *command):
        self.need(command[0])
        status, stdout, stderr = self.run_here(*command)
        self.assertEqual((status, stderr), (0, ""))
        return stdout


class Loaded(ExecutableTest):
    ENDLESS = "void main() {\n    for (int i = 0; true; i++) {\n        print(i, '.');\n    }\n}\n"

    def addresses(self, program, runs, *before):
        """Where the program is loaded, for several runs."""
        found = set()
        for _ in range(runs):
            process = subprocess.Popen([*before, program], stdout=subprocess.PIPE)
            try:
                # It prints a line and goes on for ever.
                process.stdout.read(1)
                with open(f"/proc/{process.pid}/maps", encoding="ascii") as maps:
                    found.add(next(line for line in maps if str(program) in line).split("-")[0])
            finally:
                process.kill()
                process.communicate()
        return found

    def test_addresses_differ(self):
        with open("/proc/sys/kernel/randomize_va_space", encoding="ascii") as setting:
            if setting.read().strip() == "0":
                self.skipTest("the system does not choose addresses at random")
        self.assertGreater(len(self.addresses(self.compile(self.ENDLESS), 8)), 1)

    def test_runs_without_random_addresses(self):
        self.need("setarch")
        self.assertEqual(run("setarch", "-R", "true")[0], 0, "setarch does not work here")
        program = self.compile(PROGRAM)
        self.assertEqual(self.run_here("setarch", "-R", program), (0, PRINTED, ""))
        self.assertEqual(
            len(self.addresses(self.compile(self.ENDLESS, "endless"), 4, "setarch", "-R")), 1)

    def test_many_runs_at_other_addresses(self):
        program = self.compile(PROGRAM)
        for _ in range(100):
            self.assertEqual(self.run_here(program), (0, PRINTED, ""))

    def test_needs_no_environment(self):
        program = self.compile(PROGRAM)
        ended = subprocess.run([program], env={}, cwd="/", capture_output=True, text=True,
                               check=False)
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr), (0, PRINTED, ""))

    def test_runs_with_any_stack(self):
        program = self.compile(PROGRAM)
        for limit in (64 * 1024, 1 << 20, resource.RLIM_INFINITY):
            ended = subprocess.run(
                [program], capture_output=True, text=True, check=False,
                preexec_fn=lambda: resource.setrlimit(
                    resource.RLIMIT_STACK, (limit, resource.getrlimit(resource.RLIMIT_STACK)[1])))
            self.assertEqual((ended.returncode, ended.stdout), (0, PRINTED))

    def test_stack_is_aligned_for_any_arguments(self):
        program = self.compile(PROGRAM)
        for count in range(20):
            self.assertEqual(self.run_here(program, *["x" * count] * count), (0, PRINTED, ""))

    def test_result_of_main_is_the_status(self):
        # As an int: of its 64 bits, 32 count, and of these the system keeps 8.
        for value, status in ((0, 0), (7, 7), (300, 44), (-1, 255), (1 << 32, 0)):
            self.write("prog.s", "\t.text\n\n\t.globl main\n\t.type main, @function\nmain:\n"
                       f"\tmovq ${value}, %rax\n\tret\n\t.size main, .-main\n")
            self.assertEqual(self.run_here(NATIVE, "prog.s", RUNTIME, "-o", "prog",
                                           environment={"PATH": ""}), (0, "", ""))
            self.assertEqual(self.run_here("./prog"), (status, "", ""))

    def test_memory_is_clear_when_main_begins(self):
        for size in (1, 2, 20, 500, 100_000):
            program = self.compile(COUNTING.format(size=size))
            self.assertEqual(self.run_here(program), (0, "0 0", ""))

    def test_constants_and_code_cannot_be_written(self):
        program = self.compile(Loaded.ENDLESS)
        process = subprocess.Popen([program], stdout=subprocess.PIPE)
        self.addCleanup(process.communicate)
        self.addCleanup(process.kill)
        process.stdout.read(1)
        with open(f"/proc/{process.pid}/maps", encoding="ascii") as maps:
            rows = [line.split() for line in maps if str(program) in line]
            maps.seek(0)
            stack = [line.split()[1] for line in maps if line.rstrip().endswith("[stack]")]
        modes = [row[1] for row in rows]
        self.assertEqual(stack, ["rw-p"])
        self.assertEqual([mode for mode in modes if "w" in mode and "x" in mode], [])
        self.assertEqual(sum("x" in mode for mode in modes), 1)
        # Headers and constants, and what is only written at the start.
        self.assertGreaterEqual(sum(mode == "r--p" for mode in modes), 2)


class Tools(ExecutableTest):
    def test_nm_shows_functions_with_sizes(self):
        symbols = {line.split()[-1]: line.split()
                   for line in self.tool("nm", "--print-size", self.compile(PROGRAM)).splitlines()}
        for name in FUNCTIONS:
            self.assertEqual(len(symbols[name]), 4)
            self.assertEqual(symbols[name][2], "T")
            self.assertGreater(int(symbols[name][1], 16), 0)

    def test_objdump_shows_functions(self):
        shown = self.tool("objdump", "--disassemble", self.compile(PROGRAM))
        for name in FUNCTIONS:
            self.assertRegex(shown, rf"(?m)^[0-9a-f]+ <{name}>:$")
        self.assertRegex(shown, r"call +[0-9a-f]+ <half>")
        self.assertRegex(shown, r"call +[0-9a-f]+ <krel_print>")
        self.assertNotIn("(bad)", shown)

    def test_readelf_finds_no_fault(self):
        self.need("readelf")
        self.assertEqual(self.run_here("readelf", "--all", "--wide", self.compile(PROGRAM))[2], "")

    def test_file_can_be_stripped(self):
        self.need("strip")
        program = self.compile(PROGRAM)
        self.assertEqual(self.run_here("strip", program)[0], 0)
        self.assertEqual(self.run_here(program), (0, PRINTED, ""))

    def gdb(self, program, *commands):
        self.need("gdb")
        words = [word for command in commands for word in ("-ex", command)]
        status, stdout, stderr = self.run_here("gdb", "-nx", "-batch", *words, program,
                                               environment={"DEBUGINFOD_URLS": None})
        if "ptrace" in stderr:
            self.skipTest("programs cannot be traced here")
        self.assertEqual(status, 0)
        return stdout

    def test_gdb_stops_in_a_function(self):
        shown = self.gdb(self.compile(PROGRAM), "break half", "run", "backtrace", "finish")
        self.assertTrue(re.search(r"#0 +0x[0-9a-f]+ in half \(\)\s+#1 +0x[0-9a-f]+ in main \(\)",
                                  shown), shown)

    def test_gdb_shows_where_a_fault_is(self):
        shown = self.gdb(self.compile(FAULT), "run", "backtrace")
        self.assertIn("SIGSEGV", shown)
        self.assertTrue(re.search(r"#0 +0x[0-9a-f]+ in fail \(\)\s+#1 +0x[0-9a-f]+ in main \(\)",
                                  shown), shown)


if __name__ == "__main__":
    unittest.main()
