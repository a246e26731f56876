#!/usr/bin/env python3
"""A Krel function may be called like one of the C library: the runtime does not come to need it.

Not free are `exit`, a word of the language; what the C start-up files and the linker define in
every program, so that it is found twice (`TAKEN` below); what the linker defines only where nothing
else does, and then is not what the system takes it for (`_edata`, `_end`, `__bss_start`); and what
runs before the runtime has started or after it has ended (`__libc_start_main`, `__gmon_start__`,
`__cxa_finalize` and two functions of the dynamic linker).
"""

import subprocess
import unittest

from harness import (DIVIDED_BY_ZERO, KRELCC, RuntimeTest, TIMEOUT_SECONDS, error_line,
                     native_build)

NAMES = """
    write read open close lseek ioctl poll fsync dup dup2 pipe fork execve kill wait getpid
    malloc free calloc realloc mmap munmap mprotect madvise brk sbrk memalign
    memcpy memset memmove memcmp memchr bcopy bzero strlen strcpy strcat strcmp strchr strdup
    strerror strtod strtol atoi atof itoa index rindex toupper isdigit
    printf sprintf snprintf fprintf vprintf puts putchar fputs fputc fwrite fflush fopen fclose
    setvbuf scanf gets getchar perror stdin stdout stderr errno environ
    signal sigaction sigprocmask sigaltstack raise abort atexit on_exit _exit _Exit quick_exit
    setjmp longjmp syscall time clock sleep getenv setlocale rand qsort
    log pow exp sqrt sin floor round div abs
    __cxa_atexit __errno_location __stack_chk_fail data_start
""".split()

TAKEN = """
    _start _init _fini __data_start __dso_handle _IO_stdin_used
    _DYNAMIC _GLOBAL_OFFSET_TABLE_ __TMC_END__ __GNU_EH_FRAME_HDR
""".split()

# Every function prints what it is given, so each call exercises the runtime in a function that
# could have taken the place of something the runtime uses.
FUNCTION = """\
int {name}(int n) {{
    double half = 0.5;
    print("{name} ", n, " ", half, "\\n");
    return n + 1;
}}
"""

# Enough strings for several collections, under the same names.
MAIN = """\
void main() {{
    int n = 0;
    string text = "";
{calls}
    for (int i = 0; i < 300000; i++) {{
        string number = (string) i;
        text = "still " + number;
    }}
    print(text, "\\n");
{ending}
}}
"""


def program(names, ending):
    functions = "".join(FUNCTION.format(name=name) for name in names)
    calls = "\n".join(f"    n = {name}(n);" for name in names)
    return functions + MAIN.format(calls=calls, ending=ending)


def output(names):
    lines = [f"{name} {number} 0.5\n" for number, name in enumerate(names)]
    return "".join([*lines, "still 299999\n"]).encode()


class Names(RuntimeTest):
    def assert_runs(self, ending, status, stderr):
        self.assertEqual(self.run_source(program(NAMES, ending)), (status, output(NAMES), stderr))

    def test_names_that_every_program_has_are_refused_by_the_linker(self):
        for name in TAKEN:
            with self.subTest(name=name):
                source = self.directory / "taken.krl"
                source.write_text(program([name], ""))
                compiled = subprocess.run(
                    [KRELCC, source], cwd=self.directory, stdin=subprocess.DEVNULL,
                    capture_output=True,
                    env={**native_build.environment(), "LC_ALL": "C",
                         "ASAN_OPTIONS": "detect_leaks=0"},
                    timeout=TIMEOUT_SECONDS, check=False)
                self.assertNotEqual(compiled.returncode, 0)
                self.assertIn(f"multiple definition of `{name}'".encode(), compiled.stderr)
                self.assertTrue(compiled.stderr.endswith(b"Native compilation failed.\n"))

    def test_there_are_more_than_a_hundred(self):
        self.assertGreater(len(set(NAMES)), 100)

    def test_program_that_returns_from_main(self):
        self.assert_runs("", 0, b"")

    def test_program_that_exits(self):
        self.assert_runs("    exit(0);", 0, b"")

    def test_program_that_traps(self):
        self.assert_runs("    int zero = 0; n = n / zero;", DIVIDED_BY_ZERO,
                         error_line("integer division by zero"))


if __name__ == "__main__":
    unittest.main()
