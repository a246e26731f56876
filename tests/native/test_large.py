#!/usr/bin/env python3
"""Large programs: our own native build makes the right thing of them, or leaves them to another.

The programs are smaller than they could be by KREL_SCALE, which is 20 unless it is set.
"""

import os
import resource
import unittest

from harness import KRELCC, NATIVE, NativeTest, RUNTIME, native_build, system_tool

SCALE = int(os.environ.get("KREL_SCALE", "20"))
MEGABYTE = 1 << 20

FULL_PATH = f"{NATIVE.parent}:{os.environ['PATH']}"
NOTE = '\t.section .note.GNU-stack,"",@progbits\n'


def function(name, lines):
    return (f"\n\t.globl {name}\n\t.type {name}, @function\n{name}:\n\tpushq %rbp\n"
            f"\tmovq %rsp, %rbp\n{lines}\tleave\n\tret\n\t.size {name}, .-{name}\n")


def program(*functions, data=""):
    return "\t.text\n" + "".join(functions) + data + NOTE


class LargeTest(NativeTest):
    def build(self, text, path="", **options):
        """Builds a program from its assembly. Only our own native build is there."""
        self.write("large.s", text)
        return self.run_here(NATIVE, "large.s", RUNTIME, "-o", "large",
                             environment={"PATH": path}, **options)

    def compile(self, text, path, name="large", **options):
        self.write(f"{name}.krl", text)
        return self.run_here(KRELCC, f"{name}.krl", environment={"PATH": path}, **options)

    def assert_prints(self, expected, **options):
        self.assertFalse(native_build.needs_interpreter(self.directory / "large"))
        status, stdout, stderr = self.run_here("./large", **options)
        self.assertEqual((status, stderr), (0, ""))
        self.assertTrue(stdout == expected)  # nobody wants to see the difference


class Names(LargeTest):
    SIZE = 100_000

    def test_names_of_functions(self):
        names = [letter * self.SIZE for letter in "ab"]
        calls = "".join(f"    print({name}(), \" \");\n" for name in names)
        functions = "".join(f"int {name}() {{ return {number}; }}\n"
                            for number, name in enumerate(names))
        self.assertEqual(self.compile(f"{functions}void main() {{\n{calls}}}\n", FULL_PATH)[2], "")
        self.assert_prints("0 1 ")

    def test_labels(self):
        label = ".L" + "x" * self.SIZE
        self.assertEqual(self.build(program(function(
            "main", f"\tjmp {label}\n{label}x:\n\tret\n{label}:\n\txorl %eax, %eax\n"))),
            (0, "", ""))
        self.assert_prints("")

    def test_undefined_name_is_named(self):
        name = "x" * self.SIZE
        self.assertEqual(
            self.build(program(function("main", f"\tcall {name}@PLT\n"))),
            (1, "", f"krelcc's native build: a symbol is not defined: {name}; "
             "no other gcc or clang is on the search path\n"))


class Content(LargeTest):
    def test_string(self):
        text = "0123456789" * (5_000_000 // SCALE)
        self.assertEqual(self.build(program(
            function("main", "\tleaq .LC0(%rip), %rdi\n\tcall krel_print@PLT\n\txorl %eax, %eax\n"),
            data=f'\n\t.section .rodata\n.LC0:\n\t.string "{text}"\n')), (0, "", ""))
        self.assert_prints(text)

    def test_statements(self):
        count = 1_000_000 // SCALE
        addition = ("\tmovq -8(%rbp), %rax\n\tmovq $3, %rcx\n\taddq %rcx, %rax\n"
                    "\tmovq %rax, -16(%rbp)\n\tmovq -16(%rbp), %rax\n\tmovq %rax, -8(%rbp)\n")
        self.assertEqual(self.build(program(function(
            "main", "\tsubq $16, %rsp\n\tmovq $0, %rax\n\tmovq %rax, -8(%rbp)\n" +
            addition * count + "\tmovq -8(%rbp), %rdi\n\tcall krel_inttostring@PLT\n"
            "\tmovq %rax, %rdi\n\tcall krel_print@PLT\n\txorl %eax, %eax\n"))), (0, "", ""))
        self.assert_prints(f"{3 * count}")

    def test_functions_and_strings(self):
        count = 200_000 // SCALE
        lines = "\tleaq .LC{0}(%rip), %rdi\n\tcall krel_print@PLT\n\txorl %eax, %eax\n"
        functions = [function(f"f{i}", lines.format(i)) for i in range(count)]
        main = function("main", "".join(f"\tcall f{i}@PLT\n" for i in range(count)))
        strings = "".join(f'.LC{i}:\n\t.string "string {i}."\n' for i in range(count))
        self.assertEqual(self.build(program(*functions, main,
                                            data="\n\t.section .rodata\n" + strings)), (0, "", ""))
        self.assert_prints("".join(f"string {i}." for i in range(count)))

    def test_branches_that_are_long(self):
        """From one end of a large function to the other one, and back."""
        filler = "\tmovq -8(%rbp), %rax\n" * (4_000_000 // SCALE)
        self.assertEqual(self.build(program(function(
            "main", "\tjmp .Lmain_B3\n.Lmain_B2:\n\txorl %eax, %eax\n\tjmp .Lmain_return\n" +
            filler + ".Lmain_B3:\n\tmovq $1, %rax\n\ttestq %rax, %rax\n\tjne .Lmain_B2\n" +
            filler + ".Lmain_return:\n"))), (0, "", ""))
        self.assert_prints("")

    def test_branches_that_make_each_other_grow(self):
        """Each reaches its target as long as the next one does; the last one does not."""
        count = 200_000 // SCALE
        text = []
        for number in range(count):
            target = f".L{number - 1}:\n" if number else ""
            text.append(f"\tjmp .L{number}\n" + "\tcqto\n" * 31 + target + "\tret\n")
        lines = "".join(text) + "\tret\n" * 65 + f".L{count - 1}:\n"
        self.assertEqual(self.build(program(function("main", lines))), (0, "", ""))


class Frames(LargeTest):
    """A frame of up to 2 GB can be addressed."""

    def source(self, elements):
        return ("void hold() {\n    int numbers[" + str(elements) + "];\n    numbers[0] = 7;\n"
                "    print(numbers[0]);\n}\nvoid main() {\n    print(\"held \");\n    hold();\n}\n")

    def test_frame_of_nearly_two_gigabytes(self):
        # Two names more are in the frame: hold's `print` and a temporary.
        self.assertEqual(self.compile(self.source(268_435_456 - 8), FULL_PATH)[2], "")
        self.assertFalse(native_build.needs_interpreter(self.directory / "large"))
        limit = resource.getrlimit(resource.RLIMIT_STACK)[1]
        if limit not in (resource.RLIM_INFINITY,) and limit < 3 << 30:
            self.skipTest("the stack may not be so large")
        self.assert_prints("held 7", preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_STACK, (3 << 30, limit)))

    def test_larger_frames_are_left_to_the_next_compiler(self):
        if not system_tool("gcc"):
            self.skipTest("there is no other gcc")
        for elements in (268_435_456, 400_000_000):
            with self.subTest(elements=elements):
                outcomes = []
                for path in (os.environ["PATH"], FULL_PATH):
                    status, stdout, stderr = self.compile(self.source(elements), path)
                    outcomes.append((status, stdout, stderr.count("Error:")))
                    (self.directory / "large").unlink(missing_ok=True)
                self.assertEqual(outcomes[0], outcomes[1])

    def test_larger_frames_are_refused_where_there_is_none(self):
        for size in (1 << 31, 1 << 32, 1 << 62):
            self.assertEqual(
                self.build(program(function("main", f"\tsubq ${size}, %rsp\n"))),
                (1, "", "krelcc's native build: line 8 of the assembly is not known; "
                 "no other gcc or clang is on the search path\n"))


@unittest.skipIf(native_build.needs_interpreter(NATIVE), "sanitizers take more memory than this")
class Memory(LargeTest):
    def test_too_little_memory_is_said(self):
        text = "0123456789" * 3_000_000
        status, stdout, stderr = self.build(
            program(function("main", ""), data=f'\t.section .rodata\n.LC0:\n\t.string "{text}"\n'),
            preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_AS,
                                                  (50 * MEGABYTE, 50 * MEGABYTE)))
        self.assertEqual((status, stdout), (1, ""))
        self.assertTrue(stderr.startswith("krelcc's native build: "), stderr)
        self.assertEqual(stderr.count("\n"), 1)
        self.assertFalse((self.directory / "large").exists())


if __name__ == "__main__":
    unittest.main()
