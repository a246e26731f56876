"""Tests of the model programs' own rules: arithmetic, formats, conditions and source text."""

import ast
import math
import random
import unittest

import generator
import interpreter
import tree
from render import Renderer
from tree import (Assignment, Binary, Block, BooleanLiteral, Call, CharacterLiteral, Cast,
                  Declaration, DoubleLiteral, Element, Exit, Function, If, IntLiteral, Name, Print,
                  Program, Return, StringLiteral, Unary, Variable)

MIN, MAX = -2**63, 2**63 - 1


def output(*statements, functions=()):
    main = Function("main", "void", [], Block(list(statements)))
    return interpreter.Interpreter().run(Program([*functions, main]))


def shown(expression):
    return output(Print([expression]))


def met(condition, *before):
    return output(*before, If([(condition, Block([Print([StringLiteral("yes")])]))])) == "yes"


def double(variable, value):
    return Declaration("double", [(variable, value)])


def number(value):
    literal = IntLiteral(str(abs(value)))
    return Unary("-", literal) if value < 0 else literal


class ArithmeticTest(unittest.TestCase):
    def test_integers_wrap_at_64_bits(self):
        self.assertEqual(interpreter.apply_integer("+", MAX, 1), MIN)
        self.assertEqual(interpreter.apply_integer("-", MIN, 1), MAX)
        self.assertEqual(interpreter.apply_integer("*", MAX, 2), -2)
        self.assertEqual(interpreter.apply_integer("*", 2**62, 4), 0)
        self.assertEqual(interpreter.wrap(-MIN), MIN)

    def test_quotients_are_cut_towards_zero(self):
        for left, right, expected in [(7, 2, 3), (-7, 2, -3), (7, -2, -3), (-7, -2, 3), (0, -5, 0),
                                      (MIN, 1, MIN), (MIN, 2, -2**62), (MAX, -1, -MAX)]:
            self.assertEqual(interpreter.quotient(left, right), expected)

    def test_divisions_that_trap_are_refused(self):
        for left, right in [(1, 0), (MIN, -1)]:
            with self.assertRaises(interpreter.ModelError):
                interpreter.quotient(left, right)

    def test_logical_operators_give_0_and_1(self):
        self.assertEqual(interpreter.apply_integer("&&", 2, -4), 1)
        self.assertEqual(interpreter.apply_integer("&&", 2, 0), 0)
        self.assertEqual(interpreter.apply_integer("||", 0, 8), 1)

    def test_nan_compares_as_equal_and_less(self):
        for left, right in [(math.nan, 1.5), (1.5, math.nan), (math.nan, math.nan)]:
            true = [operator for operator in tree.COMPARISONS
                    if interpreter.compare_doubles(operator, left, right)]
            self.assertEqual(true, ["==", "<", "<="])

    def test_doubles_divide_by_zero(self):
        self.assertEqual(interpreter.double_quotient(1.5, 0.0), math.inf)
        self.assertEqual(interpreter.double_quotient(1.5, -0.0), -math.inf)
        self.assertEqual(interpreter.double_quotient(-math.inf, 0.0), -math.inf)
        self.assertTrue(math.isnan(interpreter.double_quotient(0.0, -0.0)))
        self.assertTrue(math.isnan(interpreter.double_quotient(math.nan, 0.0)))


class FormatTest(unittest.TestCase):
    def test_doubles(self):
        for value, text in [
                (0.0, "0"), (-0.0, "-0"), (3.0, "3"), (2.5, "2.5"), (-2.5, "-2.5"),
                (0.1 + 0.2, "0.30000000000000004"), (100.0, "100"), (1234.5, "1234.5"),
                (1e-4, "0.0001"), (9.99e-5, "9.99e-05"), (1e15, "1000000000000000"),
                (9999999999999998.0, "9999999999999998"), (1e16, "1e+16"), (1.5e300, "1.5e+300"),
                (5e-324, "5e-324"), (123456789012345680000.0, "1.2345678901234568e+20"),
                (math.inf, "inf"), (-math.inf, "-inf"), (math.nan, "nan"), (-math.nan, "nan")]:
            self.assertEqual(interpreter.format_double(value), text)

    def test_doubles_read_back(self):
        source = random.Random(1)
        for _ in range(2000):
            value = interpreter.from_bits(source.getrandbits(63))
            if math.isfinite(value):
                self.assertEqual(float(interpreter.format_double(value)), value)

    def test_characters_keep_8_bits(self):
        self.assertEqual(interpreter.format_character(ord("a") + 256), "a")
        self.assertEqual(interpreter.format_character(-1), "\xff")
        self.assertEqual(interpreter.format_character(512), "")


class LiteralTest(unittest.TestCase):
    def test_escapes(self):
        self.assertEqual(tree.decode(r"a\tb\\n\"\q\n"), "a\tb\\n\"q\n")

    def test_character_codes(self):
        for spelling, code in [("A", 65), ("\\n", 10), ("\\t", 116), ("\t", 116), ("\\r", 114),
                               ("\\\\", 92), ("\\'", 39), ("", 0), ("\\0", 0), ("\\b", 8),
                               ("\xff", 255)]:
            self.assertEqual(CharacterLiteral(spelling).code, code)

    def test_int_literals_have_32_bits(self):
        self.assertEqual(IntLiteral("2147483648").value, -2**31)
        self.assertEqual(IntLiteral("4294967295").value, -1)
        self.assertEqual(IntLiteral("007").value, 7)

    def test_double_literals_keep_15_digits(self):
        self.assertEqual(shown(DoubleLiteral("3.141592653589793")), "3.14159265358979")
        self.assertTrue(DoubleLiteral("0.99999999999999999").is_whole)


class ExpressionTest(unittest.TestCase):
    def test_a_comparison_has_the_type_of_its_operands(self):
        self.assertEqual(shown(Binary("<", IntLiteral("1"), IntLiteral("2"))), "1")
        self.assertEqual(shown(Binary("<", BooleanLiteral(False), BooleanLiteral(True))), "true")
        self.assertEqual(shown(Binary("<", CharacterLiteral("a"), CharacterLiteral("b"))), "\x01")
        self.assertEqual(shown(Binary("<", DoubleLiteral("1.5"), DoubleLiteral("2.5"))), "5e-324")

    def test_whole_doubles_are_integers(self):
        product = Binary("*", DoubleLiteral("2.0"), DoubleLiteral("3.0"))
        self.assertEqual(shown(product), "3e-323")
        with self.assertRaises(interpreter.ModelError):
            shown(Binary("*", DoubleLiteral("2.0"), DoubleLiteral("3.5")))

    def test_not_and_plus_leave_doubles_alone(self):
        self.assertEqual(shown(Unary("!", DoubleLiteral("2.5"))), "2.5")
        self.assertEqual(shown(Unary("+", DoubleLiteral("2.5"))), "2.5")
        self.assertEqual(shown(Unary("-", DoubleLiteral("2.5"))), "-2.5")

    def test_negation_subtracts_from_zero(self):
        zero = Variable("zero", "double")
        self.assertEqual(output(double(zero, Cast("double", IntLiteral("0"))),
                                Print([Unary("-", Name(zero))])), "0")

    def test_both_operands_are_evaluated(self):
        function = Function("f", "boolean", [], Block([Print([StringLiteral("f")]),
                                                       Return(BooleanLiteral(True))]))
        either = Binary("||", BooleanLiteral(True), Call(function, []))
        self.assertEqual(shown(either), "ftrue")

    def test_an_array_name_is_its_first_element(self):
        array = Variable("a", "int", size=2)
        declaration = tree.ArrayDeclaration(array, IntLiteral("2"), [number(4), number(5)], [])
        self.assertEqual(output(declaration, Assignment(Name(array), "+=", number(3)),
                                Print([Element(array, IntLiteral("0")), Name(array)])), "77")

    def test_unset_values_are_refused(self):
        array = Variable("a", "int", size=2)
        with self.assertRaises(interpreter.ModelError):
            output(tree.ArrayDeclaration(array, IntLiteral("2"), [number(4)], []),
                   Print([Element(array, IntLiteral("1"))]))


class ConditionTest(unittest.TestCase):
    def test_a_double_holds_when_its_bits_are_zero(self):
        x = Variable("x", "double")
        for text, expected in [("0", True), ("1", False)]:
            declaration = double(x, Cast("double", IntLiteral(text)))
            self.assertEqual(met(Name(x), declaration), expected)
            self.assertEqual(met(Unary("!", Name(x)), declaration), expected)

    def test_minus_zero_has_a_bit(self):
        x = Variable("x", "double")
        minus_zero = Binary("*", Name(x), Unary("-", DoubleLiteral("1.5")))
        self.assertFalse(met(minus_zero, double(x, Cast("double", IntLiteral("0")))))

    def test_comparisons_of_doubles_combine(self):
        less = Binary("<", DoubleLiteral("0.5"), DoubleLiteral("1.5"))
        self.assertTrue(met(Binary("&&", less, IntLiteral("7"))))
        with self.assertRaises(interpreter.ModelError):
            met(Binary("&&", less, DoubleLiteral("1.5")))

    def test_strings_are_compared_by_address(self):
        self.assertTrue(met(Binary("==", StringLiteral("a"), StringLiteral("a"))))
        self.assertTrue(met(Binary("!=", StringLiteral("a"), StringLiteral("b"))))
        joined = Binary("+", StringLiteral("a"), StringLiteral("b"))
        self.assertFalse(met(Binary("==", joined, StringLiteral("ab"))))


class StatementTest(unittest.TestCase):
    def test_exit_ends_the_program_from_anywhere(self):
        function = Function("f", "void", [], Block([Exit()]))
        call = tree.CallStatement(Call(function, []))
        self.assertEqual(output(Print([StringLiteral("a")]), call, Print([StringLiteral("b")])),
                         "a")

    def test_continue_updates_and_break_leaves(self):
        i = Variable("i", "int")
        name = Name(i)
        body = Block([If([(Binary("==", name, number(1)), Block([tree.Continue()])),
                          (Binary("==", name, number(3)), Block([tree.Break()]))]),
                      Print([name])])
        self.assertEqual(output(tree.For(Declaration("int", [(i, number(0))]), None,
                                         tree.Step(name, "++"), body), Print([name])), "023")

    def test_a_program_without_end_is_refused(self):
        with self.assertRaises(interpreter.LimitError):
            output(tree.While(BooleanLiteral(True), Block([])))


class RenderTest(unittest.TestCase):
    """The source text means what the tree says: another language's parser groups it alike."""

    def random_tree(self, source, depth):
        if depth == 0 or source.random() < 0.2:
            return IntLiteral(str(source.randrange(9)))
        if source.random() < 0.25:
            return Unary(source.choice("-+"), self.random_tree(source, depth - 1))
        return Binary(source.choice("+-*/"), self.random_tree(source, depth - 1),
                      self.random_tree(source, depth - 1))

    def shape(self, node):
        if isinstance(node, IntLiteral):
            return node.value
        if isinstance(node, Unary):
            return (node.operator, self.shape(node.operand))
        return (node.operator, self.shape(node.left), self.shape(node.right))

    def parsed_shape(self, node):
        operators = {ast.Add: "+", ast.Sub: "-", ast.Mult: "*", ast.Div: "/", ast.USub: "-",
                     ast.UAdd: "+"}
        if isinstance(node, ast.Constant):
            return node.value
        if isinstance(node, ast.UnaryOp):
            return (operators[type(node.op)], self.parsed_shape(node.operand))
        return (operators[type(node.op)], self.parsed_shape(node.left),
                self.parsed_shape(node.right))

    def test_grouping(self):
        source = random.Random(2)
        for _ in range(500):
            expression = self.random_tree(source, 4)
            text = Renderer(source).write(expression)
            self.assertNotIn("--", text)
            self.assertNotIn("++", text)
            self.assertEqual(self.parsed_shape(ast.parse(text, mode="eval").body),
                             self.shape(expression), text)

    def test_levels_of_logic(self):
        renderer = Renderer(random.Random(3))
        renderer.random.random = lambda: 0.5
        a, b, c = (Name(Variable(name, "int")) for name in "abc")
        renderer.tight = False
        for expression, text in [
                (Binary("||", a, Binary("&&", b, c)), "a || b && c"),
                (Binary("&&", Binary("||", a, b), c), "(a || b) && c"),
                (Binary("==", a, Binary("<", b, c)), "a == b < c"),
                (Binary("<", Binary("==", a, b), c), "(a == b) < c"),
                (Binary("-", a, Binary("-", b, c)), "a - (b - c)"),
                (Unary("!", Binary("<", b, c)), "!(b < c)"),
                (Unary("-", Unary("-", a)), "- -a"),
                (Binary("-", a, Unary("-", b)), "a - -b")]:
            self.assertEqual(renderer.write(expression), text)


class GeneratorTest(unittest.TestCase):
    def test_a_seed_gives_one_program(self):
        self.assertEqual(generator.generate(5), generator.generate(5))
        self.assertNotEqual(generator.generate(5), generator.generate(6))

    def test_programs_are_sizeable_and_print_whole_lines(self):
        sources, outputs = zip(*map(generator.generate, range(40)))
        self.assertGreater(sum(source.count(b";") for source in sources) / 40, 60)
        for text in outputs:
            self.assertTrue(text == b"" or text.endswith(b"\n"))


if __name__ == "__main__":
    unittest.main()
