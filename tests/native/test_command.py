#!/usr/bin/env python3
"""The command line of our own native build, and what it leaves to the next compiler."""

import os
import shutil
import subprocess
import unittest

from harness import KRELCC, NATIVE, NativeTest, RUNTIME, system_tool

HEAD = "\t.text\n\n\t.globl main\n\t.type main, @function\nmain:\n"
TAIL = "\tret\n\t.size main, .-main\n\t.section .note.GNU-stack,\"\",@progbits\n"
ASSEMBLY = HEAD + "\txorl %eax, %eax\n" + TAIL
UNKNOWN_INSTRUCTION = HEAD + "\tmovl $7, %eax\n" + TAIL

PROGRAM = 'void main() {\n    print("hello");\n}\n'
# Calls in an initialiser list are not checked, so that they reach the C library.
CALLS_C_LIBRARY = 'void main() {\n    int list[1] = {abs(-3)};\n    print(list[0]);\n}\n'
NO_OTHER = "no other gcc or clang is on the search path\n"
# A name that the C library has, whose meaning for it our own native build does not judge.
FOREIGN_NAMES = ["_init", "_edata", "__libc_start_main", "__gmon_start__", "_dl_audit_preinit"]


class CommandTest(NativeTest):
    """A working directory with prog.s, and the folder bin, which is the whole search path."""

    def setUp(self):
        super().setUp()
        self.bin = self.directory / "bin"
        self.bin.mkdir()
        self.write("prog.s", ASSEMBLY)
        self.write("unknown.s", UNKNOWN_INSTRUCTION)

    def stub(self, path, commands="exit 0"):
        """A native compiler that records its name and its arguments in the file `called`."""
        script = self.bin / path
        script.parent.mkdir(parents=True, exist_ok=True)
        script.write_text("#!/bin/sh\n"
                          f"printf '%s\\n' \"$0\" \"$@\" >> '{self.directory}/called'\n"
                          f"{commands}\n")
        script.chmod(0o755)
        return script

    def stand_in(self, folder):
        """Another copy of our own native compiler."""
        (self.bin / folder).mkdir(parents=True, exist_ok=True)
        return shutil.copy(NATIVE, self.bin / folder / "gcc")

    def called(self):
        """How stubs were called since this was asked last."""
        path = self.directory / "called"
        words = path.read_text().splitlines() if path.exists() else []
        path.unlink(missing_ok=True)
        return words

    def native(self, *arguments, program=NATIVE, path=None, **environment):
        return self.run_here(program, *arguments, environment={
            "PATH": str(self.bin) if path is None else path, **environment})

    def build(self, assembly="prog.s", **options):
        return self.native(assembly, RUNTIME, "-o", "out", **options)

    def assert_handed_on(self, arguments, **options):
        gcc = self.stub("gcc")
        self.assertEqual(self.native(*arguments, **options), (0, "", ""))
        self.assertEqual(self.called(), [str(gcc), *map(str, arguments)])

    def assert_refused(self, result, reason):
        self.assertEqual(result, (1, "", f"krelcc's native build: {reason}; {NO_OTHER}"))
        self.assertFalse((self.directory / "out").exists())


class CommandLine(CommandTest):
    def test_the_known_one_builds(self):
        self.stub("gcc")
        self.assertEqual(self.build(), (0, "", ""))
        self.assertEqual(self.called(), [])
        self.assertEqual(self.run_here("./out"), (0, "", ""))

    def test_others_are_handed_on_as_they_are(self):
        runtime = str(RUNTIME)
        # Files whose names are options to compilers.
        for name in ("@prog.s", "-prog.s"):
            self.write(name, ASSEMBLY)
        for name in ("@runtime.o", "-runtime.o"):
            shutil.copy(RUNTIME, self.directory / name)
        for arguments in (
                [], ["--version"], ["prog.s"], ["prog.s", runtime], ["prog.s", runtime, "-o"],
                ["prog.s", runtime, "-o", "out", "-g"], ["-g", "prog.s", runtime, "-o", "out"],
                ["-o", "out", "prog.s", runtime], ["prog.c", runtime, "-o", "out"],
                ["prog.s", "prog.s", "-o", "out"], ["prog.s", runtime, "-c", "out"],
                [runtime, "prog.s", "-o", "out"], ["@prog.s", runtime, "-o", "out"],
                ["-prog.s", runtime, "-o", "out"], ["prog.s", "@runtime.o", "-o", "out"],
                ["prog.s", "-runtime.o", "-o", "out"],
                ["prog.S", runtime, "-o", "out"], ["", "", "", ""], ["", "", "", "", ""],
                ["a b", "c\td", "é", "$HOME", "*"]):
            with self.subTest(arguments=arguments):
                self.assert_handed_on(arguments)

    def test_files_that_cannot_be_read_are_handed_on(self):
        self.write("empty.s", "")
        (self.directory / "folder.s").mkdir()
        os.mkfifo(self.directory / "pipe.s")
        for assembly in ("missing.s", "empty.s", "folder.s", "pipe.s"):
            with self.subTest(assembly):
                self.assert_handed_on([assembly, RUNTIME, "-o", "out"])

    def test_objects_that_are_not_known_are_handed_on(self):
        self.write("empty.o", "")
        self.write("text.o", "text")
        (self.directory / "cut.o").write_bytes(RUNTIME.read_bytes()[:-1])
        for name in ("empty.o", "text.o", "cut.o", "missing.o"):
            with self.subTest(name):
                self.assert_handed_on(["prog.s", name, "-o", "out"])

    def test_standard_streams_and_status_are_the_next_ones(self):
        self.stub("gcc", "echo out; echo err >&2; exit 3")
        self.assertEqual(self.build("unknown.s"), (3, "out\n", "err\n"))

    def test_signal_of_the_next_one_is_seen(self):
        self.stub("gcc", "kill -9 $$")
        self.assertEqual(self.build("unknown.s"), (-9, "", ""))


class HandedOn(CommandTest):
    def test_real_compiler_makes_what_is_unknown(self):
        for name in ("gcc", "clang"):
            if not system_tool(name):
                continue
            with self.subTest(name):
                self.write("seven.s", UNKNOWN_INSTRUCTION)
                self.assertEqual(self.build("seven.s", path=os.environ["PATH"]), (0, "", ""))
                self.assertEqual(self.run_here("./out"), (7, "", ""))

    def test_user_sees_what_the_real_compiler_says(self):
        self.write("undefined.s", HEAD + "\tcall nowhere@PLT\n" + TAIL)
        for assembly, message in (("undefined.s", "undefined reference to `nowhere'"),
                                  ("missing.s", "No such file or directory")):
            status, stdout, stderr = self.build(assembly, path=os.environ["PATH"])
            self.assertEqual((status, stdout), (1, ""))
            self.assertIn(message, stderr)
            self.assertNotIn("native build", stderr)

    def test_call_of_the_c_library(self):
        self.write("calls.krl", CALLS_C_LIBRARY)
        environment = {"PATH": f"{NATIVE.parent}:{os.environ['PATH']}"}
        self.assertEqual(self.run_here(KRELCC, "calls.krl", environment=environment),
                         (0, 'Compiled "calls.krl" to "calls".\n', ""))
        self.assertEqual(self.run_here("./calls"), (0, "3", ""))

    def test_what_is_not_known(self):
        double = "\t.section .rodata\n.LCD0:\n\t.double 9007199254740993.0\n\t.text\n"
        for text, reason in (
                (UNKNOWN_INSTRUCTION, "line 6 of the assembly is not known"),
                (ASSEMBLY + "\t.align 8\n", "line 10 of the assembly is not known"),
                (ASSEMBLY + double, "line 12 of the assembly is not known"),
                (ASSEMBLY.removesuffix("\n"), "line "),
                (HEAD + "\tcall abs@PLT\n" + TAIL, "a symbol is not defined: abs"),
                (ASSEMBLY.replace("main", "other"), "a symbol is not defined: main"),
                *((ASSEMBLY + f"\t.text\n\t.globl {name}\n{name}:\n\tret\n",
                   f"the name has a meaning for C: {name}") for name in FOREIGN_NAMES),
                *((ASSEMBLY + f"\t.text\n\t.globl {name}\n{name}:\n\tret\n",
                   f"a symbol is defined twice: {name}")
                  for name in ("exit", "_start", "krel_print", "__ehdr_start"))):
            with self.subTest(reason):
                self.write("text.s", text)
                status, stdout, stderr = self.build("text.s", path="/no/such/folder")
                self.assertEqual((status, stdout), (1, ""))
                self.assertTrue(stderr.startswith(f"krelcc's native build: {reason}"), stderr)
                self.assertTrue(stderr.endswith(NO_OTHER), stderr)
                self.assertEqual(stderr.count("\n"), 1)
                self.assertFalse((self.directory / "out").exists())
                gcc = self.stub("gcc")
                self.assertEqual(self.build("text.s"), (0, "", ""))
                self.assertEqual(self.called(), [str(gcc), "text.s", str(RUNTIME), "-o", "out"])
                gcc.unlink()


class Search(CommandTest):
    REASON = "line 6 of the assembly is not known"

    def assert_chosen(self, expected, *folders, **options):
        path = ":".join(str(folder) for folder in folders)
        self.assertEqual(self.build("unknown.s", path=path, **options), (0, "", ""))
        self.assertEqual(self.called()[:2], [str(expected), "unknown.s"])

    def test_next_gcc_behind_the_own_folder(self):
        self.stub("before/gcc")
        behind = self.stub("behind/gcc")
        self.assert_chosen(behind, self.bin / "before", NATIVE.parent, self.bin / "behind")

    def test_gcc_comes_before_clang(self):
        clang = self.stub("one/clang")
        self.assert_chosen(clang, NATIVE.parent, self.bin / "one")
        gcc = self.stub("two/gcc")
        self.assert_chosen(gcc, NATIVE.parent, self.bin / "one", self.bin / "two")

    def test_gcc_that_cannot_run_is_followed_by_the_next_one(self):
        self.stub("one/gcc").write_text("#!/no/such/interpreter\n")
        clang = self.stub("two/clang")
        self.assert_chosen(clang, NATIVE.parent, self.bin / "one", self.bin / "two")

    def test_compiler_that_cannot_run_is_named(self):
        gcc = self.stub("gcc")
        gcc.write_text("#!/no/such/interpreter\n")
        self.assertEqual(self.build("unknown.s"),
                         (1, "", f"krelcc's native build: {self.REASON}; could not run {gcc}: "
                          "No such file or directory\n"))

    def test_own_folder_that_is_not_on_the_path(self):
        gcc = self.stub("gcc")
        self.assert_chosen(gcc, self.bin)

    def test_own_folder_by_a_link(self):
        (self.bin / "link").symlink_to(NATIVE.parent)
        (self.bin / "one").mkdir()
        (self.bin / "one" / "gcc").symlink_to(NATIVE)
        gcc = self.stub("gcc")
        self.assert_chosen(gcc, self.bin / "link", self.bin / "one", NATIVE.parent, self.bin)

    def test_empty_pieces_are_the_working_directory(self):
        self.stub("../gcc")
        for path in (":", f"{NATIVE.parent}:", f"{NATIVE.parent}::/no/such/folder", ""):
            with self.subTest(path):
                self.assertEqual(self.build("unknown.s", path=path), (0, "", ""))
                self.assertEqual(self.called()[:2], ["./gcc", "unknown.s"])

    def test_no_other_compiler(self):
        self.assert_refused(self.build("unknown.s"), self.REASON)
        self.assert_refused(self.build("unknown.s", path=str(NATIVE.parent)), self.REASON)
        self.assert_refused(self.build("unknown.s", path=""), self.REASON)

    def test_path_that_is_not_set(self):
        ended = subprocess.run([NATIVE, "unknown.s", RUNTIME, "-o", "out"], cwd=self.directory,
                               capture_output=True, text=True, check=False,
                               env={"ASAN_OPTIONS": "detect_leaks=0"})
        self.assert_refused((ended.returncode, ended.stdout, ended.stderr), self.REASON)

    def test_two_stand_ins_do_not_hand_on_for_ever(self):
        self.stand_in("other")
        own, other, gcc = NATIVE.parent, self.bin / "other", self.stub("last/gcc")
        for folders in ([own, other], [other, own], [own, other, own, other],
                        [own, other, other, own]):
            with self.subTest(folders=folders):
                self.assert_refused(self.build("unknown.s", path=":".join(map(str, folders))),
                                    self.REASON)
                self.assert_chosen(gcc, *folders, gcc.parent)
                self.assert_chosen(gcc, *folders, gcc.parent, *folders, program=other / "gcc")

    def test_wrapper_that_calls_a_stand_in_again(self):
        wrapper = self.stub("gcc", f'exec {NATIVE} "$@"')
        self.assert_refused(self.build("unknown.s", path=f"{NATIVE.parent}:{self.bin}"),
                            self.REASON)
        self.assertEqual(self.called()[:2], [str(wrapper), "unknown.s"])

    def test_started_under_another_name(self):
        link = self.directory / "compiler"
        link.symlink_to(NATIVE)
        gcc = self.stub("gcc")
        self.assert_chosen(gcc, self.bin, program=link)
        self.assertEqual(self.build(program=link), (0, "", ""))


if __name__ == "__main__":
    unittest.main()
