"""Runs a model program straight from its tree and tells what its executable must print.

A value is what a machine register holds: a float for a double, a Text for a string, and a signed
64-bit integer for everything else. Which of them an expression gives is not always what its type
says: a comparison of two doubles has the type double but gives the integer 0 or 1, and whoever
takes that for a double sees the bits of the integer.
"""

import decimal
import math
import struct

import tree

MAX_TEXT = 10000  # bytes of one string
MAX_STEPS = 60000  # statements of one run


class ModelError(Exception):
    """The program would trap, read what is not set, or not compile: the generator is wrong."""


class LimitError(Exception):
    """The program runs for too long or makes too long strings to serve as a test."""


class Exited(Exception):
    """An exit statement ended the program."""


class Text:
    """A string; as with addresses, two texts are equal when they are the same object."""

    def __init__(self, characters):
        if len(characters) > MAX_TEXT:
            raise LimitError("a string grows too long")
        self.characters = characters


# Arithmetic


def wrap(value):
    """The integer as 64 bits in two's complement."""
    return (value + 2**63) % 2**64 - 2**63


def quotient(left, right):
    """The quotient rounded towards zero."""
    if right == 0 or (left == -2**63 and right == -1):
        raise ModelError(f"the division {left} / {right} traps")
    magnitude = abs(left) // abs(right)
    return magnitude if (left < 0) == (right < 0) else -magnitude


def double_quotient(left, right):
    if right != 0:
        return left / right
    if left == 0 or math.isnan(left):
        return math.nan
    return math.copysign(math.inf, left) * math.copysign(1.0, right)


def to_bits(value):
    return struct.unpack("<q", struct.pack("<d", value))[0]


def from_bits(value):
    return struct.unpack("<d", struct.pack("<q", value))[0]


COMPARE = {
    "==": lambda left, right: left == right,
    "!=": lambda left, right: left != right,
    "<": lambda left, right: left < right,
    ">": lambda left, right: left > right,
    "<=": lambda left, right: left <= right,
    ">=": lambda left, right: left >= right,
}
INTEGER_ARITHMETIC = {
    "+": lambda left, right: wrap(left + right),
    "-": lambda left, right: wrap(left - right),
    "*": lambda left, right: wrap(left * right),
    "/": quotient,
    "&&": lambda left, right: int(left != 0 and right != 0),
    "||": lambda left, right: int(left != 0 or right != 0),
}
DOUBLE_ARITHMETIC = {
    "+": lambda left, right: left + right,
    "-": lambda left, right: left - right,
    "*": lambda left, right: left * right,
    "/": double_quotient,
}


def compare_doubles(operator, left, right):
    """With a NaN ==, < and <= are true and the others false."""
    if math.isnan(left) or math.isnan(right):
        return int(operator in ("==", "<", "<="))
    return int(COMPARE[operator](left, right))


def apply_integer(operator, left, right):
    if operator in COMPARE:
        return int(COMPARE[operator](left, right))
    return INTEGER_ARITHMETIC[operator](left, right)


def apply_double(operator, left, right):
    if operator in COMPARE:
        return compare_doubles(operator, left, right)
    if operator not in DOUBLE_ARITHMETIC:
        raise ModelError(f"{operator} takes no double")
    return DOUBLE_ARITHMETIC[operator](left, right)


def format_double(value):
    """The shortest digits that read back as the same double, without a superfluous point.

    Magnitudes from 1e-4 up to but not including 1e16 have no exponent.
    """
    if math.isnan(value):
        return "nan"
    sign = "-" if math.copysign(1.0, value) < 0 else ""
    if math.isinf(value):
        return sign + "inf"
    if value == 0:
        return sign + "0"
    _, digits, exponent = decimal.Decimal(repr(value)).normalize().as_tuple()
    digits = "".join(map(str, digits))
    point = len(digits) + exponent  # the number is 0.DIGITS times ten to this power
    if not 1e-4 <= abs(value) < 1e16:
        fraction = "." + digits[1:] if len(digits) > 1 else ""
        return f"{sign}{digits[0]}{fraction}e{point - 1:+03d}"
    if point <= 0:
        return f"{sign}0.{'0' * -point}{digits}"
    if point >= len(digits):
        return sign + digits.ljust(point, "0")
    return f"{sign}{digits[:point]}.{digits[point:]}"


def format_character(code):
    """The low 8 bits as one character; code 0 ends the text before it begins."""
    return chr(code & 0xFF) if code & 0xFF else ""


def format_boolean(value):
    if value not in (0, 1):
        raise ModelError(f"the boolean {value} is shown")
    return "true" if value else "false"


SHOW = {
    "int": str,
    "double": format_double,
    "boolean": format_boolean,
    "character": format_character,
    "string": lambda text: text.characters,
}
REGISTER = {"double": float, "string": Text}  # everything else is an int


# Programs


class Frame:
    """The variables of one call, by name: scopes are flat."""

    def __init__(self):
        self.slots = {}
        self.result = None


BREAK, CONTINUE, RETURN = "break", "continue", "return"


class Interpreter:
    """Executes one program; statements give what leaves them early, or None."""

    def __init__(self):
        self.output = []
        self.steps = 0
        self.literals = {}
        self.frame = None
        self.evaluators = {
            tree.IntLiteral: lambda node: node.value,
            tree.DoubleLiteral: self.double_literal,
            tree.BooleanLiteral: lambda node: int(node.value),
            tree.CharacterLiteral: lambda node: node.code,
            tree.StringLiteral: lambda node: self.literals.setdefault(node.text, Text(node.text)),
            tree.Name: self.load,
            tree.Element: self.load,
            tree.Unary: self.unary,
            tree.Binary: self.binary,
            tree.Call: self.call,
            tree.Cast: self.cast,
        }
        self.executors = {
            tree.Declaration: self.declare,
            tree.ArrayDeclaration: self.declare_array,
            tree.Assignment: self.assign,
            tree.Step: self.step,
            tree.CallStatement: self.call_statement,
            tree.Print: self.print,
            tree.Exit: self.exit,
            tree.Return: self.return_from,
            tree.Break: lambda node: BREAK,
            tree.Continue: lambda node: CONTINUE,
            tree.Block: self.block,
            tree.If: self.branch,
            tree.While: self.loop_while,
            tree.For: self.loop_for,
        }

    def run(self, program):
        """What the program prints, a character per byte."""
        main = next(function for function in program.functions if function.name == "main")
        try:
            self.call(tree.Call(main, []))
        except Exited:
            pass
        return "".join(self.output)

    # Expressions

    def evaluate(self, node):
        return self.evaluators[type(node)](node)

    def evaluate_double(self, node):
        """The value where a double is wanted: an integer's bits are taken as they are."""
        value = self.evaluate(node)
        if isinstance(value, float):
            return value
        if isinstance(value, Text) or isinstance(node, (tree.IntLiteral, tree.DoubleLiteral)):
            raise ModelError("not a double operand")
        return from_bits(value)

    def evaluate_as(self, type_name, node):
        """The value as a place or a conversion of that type sees it."""
        if type_name == "double":
            return self.evaluate_double(node)
        value = self.evaluate(node)
        if isinstance(value, Text) != (type_name == "string") or isinstance(value, float):
            raise ModelError(f"not of type {type_name}")
        return value

    @staticmethod
    def double_literal(node):
        return int(node.text) if node.is_whole else float(node.text)

    def slot(self, node):
        """The list that holds a variable's values, and the index; a scalar is a list of one.

        An array's bare name stands for its first element.
        """
        values = self.frame.slots[node.variable.name]
        if isinstance(node, tree.Name):
            return values, 0
        index = self.evaluate(node.index)
        if not 0 <= index < len(values):
            raise ModelError("an index is out of range")
        return values, index

    def load(self, node):
        values, index = self.slot(node)
        if values[index] is None:
            raise ModelError("a value is read before it is set")
        return values[index]

    def unary(self, node):
        value = self.evaluate(node.operand)
        if isinstance(value, float):
            return 0.0 - value if node.operator == "-" else value
        if node.operator == "!":
            return int(value == 0)  # no address is 0
        if isinstance(value, Text):
            raise ModelError("arithmetic with an address")
        return wrap(-value) if node.operator == "-" else value

    def binary(self, node):
        """Both operands are always evaluated, those of && and || too."""
        left = self.evaluate(node.left)
        right = self.evaluate(node.right)
        if isinstance(left, float) or isinstance(right, float):
            return self.binary_double(node, left, right)
        if isinstance(left, Text) and isinstance(right, Text):
            if node.operator == "+":
                return Text(left.characters + right.characters)
            if node.operator in ("==", "!="):
                return int((left is right) == (node.operator == "=="))
        if isinstance(left, Text) or isinstance(right, Text):
            raise ModelError("arithmetic with an address")
        return apply_integer(node.operator, left, right)

    @staticmethod
    def binary_double(node, left, right):
        literals = (tree.IntLiteral, tree.DoubleLiteral)
        for operand, value in ((node.left, left), (node.right, right)):
            if isinstance(operand, literals) and isinstance(value, int):
                raise ModelError("an integer literal meets a double")
            if isinstance(value, Text):
                raise ModelError("an address meets a double")
        left, right = (from_bits(value) if isinstance(value, int) else value
                       for value in (left, right))
        return apply_double(node.operator, left, right)

    def cast(self, node):
        source = node.operand.type
        value = self.evaluate_as(source, node.operand)
        if node.type == "string":
            return Text(SHOW[source](value))
        if (source, node.type) == ("int", "double"):
            return float(value)
        return value

    def call(self, node):
        function = node.function
        frame = Frame()
        for parameter, argument in zip(function.parameters, node.arguments, strict=True):
            frame.slots[parameter.name] = [self.passed(parameter.type, self.evaluate(argument))]
        caller, self.frame = self.frame, frame
        self.block(function.body)
        self.frame = caller
        if function.return_type == "void":
            return None
        return self.passed(function.return_type, frame.result)

    @staticmethod
    def passed(type_name, value):
        """The value of an argument or a result, which travels in the register of its type."""
        if not isinstance(value, REGISTER.get(type_name, int)):
            raise ModelError(f"no {type_name} is passed")
        return value

    def holds(self, node):
        """Whether a condition is met.

        It is its negation that is computed and tested for zero, and the negation of a double is
        the double itself. So a double is a true condition exactly when all its bits are zero.
        """
        value = self.evaluate(node)
        if isinstance(value, float):
            return to_bits(value) == 0
        return isinstance(value, Text) or value != 0

    # Statements

    def count_step(self):
        self.steps += 1
        if self.steps > MAX_STEPS:
            raise LimitError("the program runs for too long")

    def execute(self, node):
        self.count_step()
        return self.executors[type(node)](node)

    def block(self, node):
        for statement in node.statements:
            left = self.execute(statement)
            if left:
                return left
        return None

    def store(self, target, value):
        values, index = self.slot(target)
        values[index] = value

    def declare(self, node):
        for variable, value in node.declarators:
            self.frame.slots[variable.name] = [self.evaluate_as(variable.type, value)]

    def declare_array(self, node):
        """An array keeps its elements when its declaration is passed again."""
        values = self.frame.slots.setdefault(node.variable.name, [None] * node.variable.size)
        for index, element in enumerate(node.elements):
            values[index] = self.evaluate_as(node.variable.type, element)

    def assign(self, node):
        value = node.value
        if node.operator != "=":
            value = tree.Binary(node.operator[0], node.target, value)
        self.store(node.target, self.evaluate_as(node.target.type, value))

    def step(self, node):
        change = tree.Binary(node.operator[0], node.target, tree.IntLiteral("1"))
        self.store(node.target, self.evaluate_as(node.target.type, change))

    def call_statement(self, node):
        self.call(node.call)

    def print(self, node):
        """All arguments are evaluated before any is printed: a call among them prints first."""
        self.output.append("".join([SHOW[argument.type](self.evaluate_as(argument.type, argument))
                                    for argument in node.arguments]))

    @staticmethod
    def exit(_):
        """The argument is not even evaluated."""
        raise Exited

    def return_from(self, node):
        if node.value is not None:
            self.frame.result = self.evaluate(node.value)
        return RETURN

    def branch(self, node):
        for condition, body in node.arms:
            if self.holds(condition):
                return self.block(body)
        return self.block(node.otherwise) if node.otherwise else None

    def loop_while(self, node):
        return self.loop(node.condition, None, node.body)

    def loop_for(self, node):
        if node.start is not None:
            self.execute(node.start)
        return self.loop(node.condition, node.update, node.body)

    def loop(self, condition, update, body):
        while condition is None or self.holds(condition):
            self.count_step()
            left = self.block(body)
            if left == BREAK:
                return None
            if left == RETURN:
                return left
            if update is not None:
                self.execute(update)
        return None
