#!/usr/bin/env python3
"""The command line: what is refused with the usage text, and what the options mean."""

import unittest

from harness import CommandLineTest


def usage(program):
    return (f"Usage: {program} <source.krl> [-o output] [dump-options]\n"
            "Dump options:\n"
            "  --ast-dump           Write <source>.ast.json\n"
            "  --ast-semantic-dump  Write <source>.semantic.json\n"
            "  --ir-dump            Write <source>.ir\n"
            "  --asm-dump           Write <source>.s\n")


class Usage(CommandLineTest):
    def assert_usage(self, *arguments):
        with self.subTest(arguments=arguments):
            self.assertEqual(self.krelcc(*arguments, name="krelcc"), (1, "", usage("krelcc")))
            self.assertEqual(self.called(), [])

    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def test_no_argument(self):
        self.assert_usage()

    def test_missing_source(self):
        self.assert_usage("-o", "out")
        self.assert_usage("--ast-dump", "--ir-dump")

    def test_second_source(self):
        self.assert_usage("prog.krl", "extra.krl")
        self.assert_usage("prog.krl", "prog.krl")
        self.assert_usage("prog.krl", "")
        self.assert_usage("prog.krl", "-o", "out", "extra")

    def test_other_extension(self):
        for source in ("prog.txt", "prog", "prog.KRL", "prog.krlx", "prog.krl.txt", "krl", "prog.",
                       "prog.krl/", "prog.krl/prog"):
            self.assert_usage(source)

    def test_a_leading_dot_begins_no_extension(self):
        self.assert_usage(".krl")
        self.assert_usage("dir/.krl")

    def test_empty_source_has_no_extension(self):
        self.assert_usage("")

    def test_output_option_without_value(self):
        self.assert_usage("prog.krl", "-o")
        self.assert_usage("-o")

    def test_second_output_option(self):
        self.assert_usage("-o", "a", "prog.krl", "-o", "b")
        self.assert_usage("-o", "a", "-o", "a", "prog.krl")

    def test_second_output_option_behind_an_empty_output(self):
        self.assert_usage("-o", "", "-o", "b", "prog.krl")

    def test_empty_output(self):
        self.assert_usage("prog.krl", "-o", "")

    def test_unknown_option(self):
        for option in ("-x", "-", "--", "--help", "-O2", "-oout", "--ast", "--ast-dump=x",
                       "--AST-DUMP", "-ast-dump", "--asm-dump ", "-prog.krl"):
            self.assert_usage("prog.krl", option)
            self.assert_usage(option, "prog.krl")

    def test_source_beginning_with_a_dash(self):
        for source in ("-prog.krl", "--prog.krl", "-.krl"):
            self.write(source, "void main() { }\n")
            self.assert_usage(source)
        self.assertEqual(self.krelcc("./-prog.krl"),
                         (0, self.compiled("./-prog.krl", "./-prog"), ""))

    def test_program_name_is_shown_as_given(self):
        for name in ("./krelcc", "/no/such/place", "two words", '"quoted"'):
            self.assertEqual(self.krelcc(name=name), (1, "", usage(name)))


class Options(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.stub("gcc")

    def test_output_before_and_behind_the_source(self):
        for arguments in (("-o", "out", "prog.krl"), ("prog.krl", "-o", "out")):
            self.assertEqual(self.krelcc(*arguments), (0, self.compiled(output="out"), ""))
            self.assertEqual(self.called()[-2:], ["-o", "out"])

    def test_dump_options_in_any_place_and_repeated(self):
        arguments = ("--ir-dump", "prog.krl", "--ir-dump", "-o", "out", "--ir-dump")
        self.assertEqual(self.krelcc(*arguments),
                         (0, 'KrelIR written to "prog.ir".\n' + self.compiled(output="out"), ""))

    def test_output_is_the_next_argument_whatever_it_is(self):
        self.assertEqual(self.krelcc("-o", "--ast-dump", "prog.krl"),
                         (0, self.compiled(output="--ast-dump"), ""))
        self.assertEqual(self.krelcc("prog.krl", "-o", "-o"), (0, self.compiled(output="-o"), ""))
        self.assertEqual(self.krelcc("prog.krl", "-o", "prog.krl"),
                         (0, self.compiled(output="prog.krl"), ""))
        self.assertEqual(self.files(), ["called", "prog.krl"])

    def test_output_is_the_source_without_extension(self):
        for source, output in (("prog.krl", "prog"), ("./prog.krl", "./prog"),
                               ("src/prog.krl", "src/prog"), ("a.b.krl", "a.b"),
                               (".hidden.krl", ".hidden"), ("x.y/z.krl", "x.y/z")):
            self.write(source, "void main() { }\n")
            self.assertEqual(self.krelcc(source), (0, self.compiled(source, output), ""))
            self.assertEqual(self.called()[-2:], ["-o", output])

    def test_absolute_source(self):
        source = self.write("src/prog.krl", "void main() { }\n")
        self.assertEqual(self.krelcc(source),
                         (0, self.compiled(source, source.with_suffix("")), ""))

    def test_paths_are_shown_quoted(self):
        self.write('a "b"\\c.krl', "void main() { }\n")
        self.assertEqual(self.krelcc('a "b"\\c.krl', "--ast-dump", "--ir-dump", "--asm-dump"),
                         (0, 'AST written to "a \\"b\\"\\\\c.ast.json".\n'
                             'KrelIR written to "a \\"b\\"\\\\c.ir".\n'
                             'Assembly written to "a \\"b\\"\\\\c.s".\n'
                             'Compiled "a \\"b\\"\\\\c.krl" to "a \\"b\\"\\\\c".\n', ""))


if __name__ == "__main__":
    unittest.main()
