"""Random expressions of each type, over the variables and functions of a place in a program."""

import re

import tree
from tree import (Binary, BooleanLiteral, Call, CharacterLiteral, DoubleLiteral, Element,
                  IntLiteral, Name, StringLiteral, Unary, Variable)
from vocabulary import CHARACTER_SPELLINGS, LITERAL_PIECES, WORDS

TYPES = ["int", "double", "boolean", "character", "string"]
TYPE_WEIGHTS = [40, 24, 12, 12, 12]

# An intermediate line is split at its last operator between blanks, string literals included, and
# an element store at its last bracket before an equals sign.
OPERATOR_BETWEEN_BLANKS = re.compile(r"\s(\|\||&&|==|!=|<=|>=|<|>|\+|-|\*|/)\s", re.ASCII)
STORE = re.compile(r"\]\s*=", re.ASCII)


def as_intermediate(text):
    """A literal's text with line ends and tabs escaped, as the code generator's patterns see it."""
    return text.replace("\n", "\\n").replace("\r", "\\r").replace("\t", "\\t")


class Expressions:
    """Generates expressions at a place in the body of one function.

    `scopes` holds the variables that are surely set here, innermost block last; `multiplier` bounds
    how often the place runs in one call of the function, and `cost` the statements that such a call
    executes. The functions of `group` may be called `recursions` more times, one level deeper; all
    other calls go to `callables`, which are complete and of known cost.
    """

    def __init__(self, random, function, callables, limit, group=(), recursions=0):
        self.random = random
        self.function = function
        self.callables = callables
        self.group = group
        self.recursions = recursions
        self.limit = limit
        self.scopes = [list(function.parameters)]
        self.used = {variable.name for variable in function.parameters} | {function.name}
        self.multiplier = 1
        self.cost = 0
        self.calls_allowed = True
        self.strings_left = 0
        self.expressions = {
            "int": self.integer, "double": self.double, "boolean": self.boolean,
            "character": self.character, "string": self.string,
        }

    # Choices

    def chance(self, probability):
        return self.random.random() < probability

    def weighted(self, rows):
        return self.random.choices([row[1] for row in rows], [row[0] for row in rows])[0]

    def pick_type(self):
        return self.random.choices(TYPES, TYPE_WEIGHTS)[0]

    # Variables

    def new_name(self):
        while True:
            name = self.random.choice(WORDS)
            if self.callables and self.chance(0.03):
                name = self.random.choice(self.callables).name
            if self.chance(0.3):
                name += str(self.random.randrange(30))
            if name not in self.used and not re.fullmatch(r"_t\d+|B\d+", name):
                self.used.add(name)
                return name

    def new_variable(self, type_name, **details):
        return Variable(self.new_name(), type_name, **details)

    def enter(self, *variables):
        self.scopes[-1].extend(variables)

    def visible(self, type_name):
        return [variable for scope in self.scopes for variable in scope
                if variable.type == type_name]

    def scalars(self, type_name):
        return [variable for variable in self.visible(type_name) if variable.size is None]

    def arrays(self, type_name):
        return [variable for variable in self.visible(type_name) if variable.size is not None]

    def bounded(self, type_name, low, high):
        """The frozen variables whose values lie in a range."""
        return [variable for variable in self.scalars(type_name)
                if variable.frozen and variable.bounds
                and low <= variable.bounds[0] and variable.bounds[1] <= high]

    def index_of(self, array):
        """An index is a literal or a variable; nobody asks for its type."""
        choices = self.bounded("int", 0, array.size - 1)
        choices += self.bounded("character", 0, array.size - 1)
        if array.size > 1 and self.chance(0.05):
            choices += self.scalars("boolean")
        if choices and self.chance(0.75):
            return Name(self.random.choice(choices))
        return IntLiteral(str(self.random.randrange(array.size)))

    def element_of(self, type_name):
        arrays = self.arrays(type_name)
        if not arrays:
            return None
        array = self.random.choice(arrays)
        if self.chance(0.05):
            return Name(array)  # its first element
        return Element(array, self.index_of(array))

    def target(self, type_name):
        """A place to assign to, or None."""
        scalars = [variable for variable in self.scalars(type_name) if not variable.frozen]
        if scalars and self.chance(0.7):
            return Name(self.random.choice(scalars))
        return self.element_of(type_name)

    # Expressions: each gives a node of its type, and for doubles one whose value is a double

    def expression(self, type_name, depth=None):
        if depth is None:
            depth = self.random.choice([0, 1, 1, 2, 2, 3])
        return self.expressions[type_name](depth)

    def leaf(self, type_name, literal):
        roll = self.random.random()
        scalars = self.scalars(type_name)
        if scalars and roll < 0.6:
            return Name(self.random.choice(scalars))
        if roll < 0.75:
            element = self.element_of(type_name)
            if element:
                return element
        return literal()

    def binary(self, operators, make, depth):
        return Binary(self.random.choice(operators), make(depth - 1), make(depth - 1))

    def comparison(self, make, depth):
        """Often of equal values, where the operators differ most."""
        result = self.binary(tree.COMPARISONS, make, depth)
        if isinstance(result.left, (Name, Element)) and self.chance(0.25):
            result.right = result.left
        return result

    def called(self, type_name, depth):
        """A call that gives the type, or None where none is affordable or allowed."""
        if not self.calls_allowed:
            return None
        choices = [function for function in self.callables
                   if function.return_type == type_name and self.affords(function)]
        if self.recursions and self.multiplier == 1:
            choices += [function for function in self.group if function.return_type == type_name]
        return self.call_of(self.random.choice(choices), depth) if choices else None

    def affords(self, function):
        return self.cost + self.multiplier * function.cost <= self.limit

    def call_of(self, function, depth):
        parameters = function.parameters
        arguments = []
        if function in self.group:
            self.recursions -= 1
            arguments.append(Binary("-", Name(self.function.parameters[0]), IntLiteral("1")))
        else:
            self.cost += self.multiplier * function.cost
            if function.max_depth:
                arguments.append(self.recursion_depth(function.max_depth))
        for parameter in parameters[len(arguments):]:
            if parameter.type == "string" and self.chance(0.3):
                arguments.append(self.any_string_literal())
            else:
                arguments.append(self.expression(parameter.type, min(depth - 1, 2)))
        return Call(function, arguments)

    def recursion_depth(self, limit):
        choices = self.bounded("int", -9, limit)
        if choices and self.chance(0.5):
            return Name(self.random.choice(choices))
        return IntLiteral(str(self.random.randrange(limit + 1)))

    def integer_literal(self):
        pick = self.random
        return IntLiteral(self.weighted([
            (60, lambda: str(pick.randrange(12))),
            (20, lambda: str(pick.randrange(1000))),
            (8, lambda: str(pick.randrange(2**31))),
            (4, lambda: str(2**31 - pick.randrange(1, 4))),
            (3, lambda: str(pick.randrange(2**31, 2**32))),
            (2, lambda: "00" + str(pick.randrange(100))),
        ])())

    def integer(self, depth):
        if depth <= 0:
            return self.leaf("int", self.integer_literal)
        return self.weighted([
            (12, lambda: self.leaf("int", self.integer_literal)),
            (42, lambda: self.binary("+-*", self.integer, depth)),
            (8, lambda: Binary("/", self.integer(depth - 1), self.divisor())),
            (8, lambda: self.comparison(self.integer, depth)),
            (4, lambda: self.binary(tree.LOGICAL, self.integer, depth)),
            (10, lambda: self.unary(self.integer(depth - 1))),
            (12, lambda: self.called("int", depth) or self.integer(depth - 1)),
        ])()

    def divisor(self):
        """Neither 0 nor -1."""
        choices = [variable for variable in self.scalars("int")
                   if variable.frozen and variable.divides] + self.bounded("int", 1, 2**31)
        if choices and self.chance(0.5):
            return Name(self.random.choice(choices))
        literal = IntLiteral(str(self.random.choice([2, 3, 5, 7, 10, 16, 97, 1000, 2147483647])))
        return Unary("-", literal) if self.chance(0.3) else literal

    def unary(self, operand):
        return Unary(self.random.choice("--+!"), operand)

    def double_literal(self):
        """A literal keeps its point only if its digits are few and it is no whole number."""
        while True:
            digits = self.random.choice([1, 2, 2, 3, 3, 4, 6, 10, 14, 16])
            scale = self.random.randrange(1, digits + 1)
            number = str(self.random.randrange(1, 10**digits)).rjust(scale + 1, "0")
            literal = DoubleLiteral(f"{number[:-scale]}.{number[-scale:]}")
            if not literal.is_whole and "e" not in literal.text:
                return literal

    def double(self, depth):
        if depth <= 0:
            return self.leaf("double", self.double_literal)
        return self.weighted([
            (15, lambda: self.leaf("double", self.double_literal)),
            (60, lambda: self.binary("+-*/", self.double, depth)),
            (3, lambda: Binary(self.random.choice("+-*/"), self.double(depth - 1),
                               self.odd_double(depth - 1))),
            (10, lambda: self.unary(self.double(depth - 1))),
            (12, lambda: self.called("double", depth) or self.double(depth - 1)),
        ])()

    def odd_double(self, depth):
        """Of type double, but its value is an integer: the bits of a tiny number."""
        return self.weighted([
            (6, lambda: self.comparison(self.double, depth)),
            (1, lambda: Binary(self.random.choice("+-*"), self.whole(), self.whole())),
            (1, lambda: Unary(self.random.choice("-+!"), self.whole())),
            (1, lambda: self.binary(tree.LOGICAL, self.odd_double, depth) if depth > 0
             else Unary("-", self.whole())),
            (1, lambda: self.binary("+-*", self.odd_double, depth) if depth > 0
             else Unary("!", self.whole())),
        ])()

    def whole(self):
        return DoubleLiteral(f"{self.random.randrange(20)}.0")

    def boolean_literal(self):
        return BooleanLiteral(self.chance(0.5))

    def boolean(self, depth):
        """Arithmetic on booleans leaves 0 and 1 only behind a comparison or a logical operator."""
        if depth <= 0:
            return self.leaf("boolean", self.boolean_literal)
        return self.weighted([
            (15, lambda: self.leaf("boolean", self.boolean_literal)),
            (30, lambda: self.binary(tree.LOGICAL, self.boolean, depth)),
            (20, lambda: self.comparison(self.boolean, depth)),
            (5, lambda: Binary(self.random.choice(tree.COMPARISONS + tree.LOGICAL),
                               self.binary("+-*", self.boolean, depth), self.boolean(depth - 1))),
            (15, lambda: Unary("!", self.boolean(depth - 1))),
            (12, lambda: self.called("boolean", depth) or self.boolean(depth - 1)),
        ])()

    def character_literal(self):
        return CharacterLiteral(self.random.choice(CHARACTER_SPELLINGS))

    def character(self, depth):
        """A character holds 64 bits; only when shown it is cut to 8."""
        if depth <= 0:
            return self.leaf("character", self.character_literal)
        return self.weighted([
            (40, lambda: self.leaf("character", self.character_literal)),
            (20, lambda: self.binary("+-*", self.character, depth)),
            (4, lambda: Binary("/", self.character(depth - 1), CharacterLiteral("a"))),
            (5, lambda: self.comparison(self.character, depth)),
            (5, lambda: self.unary(self.character(depth - 1))),
            # A double quote is safe only in pairs.
            (1, lambda: Binary("+", CharacterLiteral('"'), CharacterLiteral('"'))),
            (12, lambda: self.called("character", depth) or self.character(depth - 1)),
        ])()

    def literal_of(self, fits):
        while True:
            count = self.random.choice([0, 1, 2, 3, 5, 8, 12])
            literal = StringLiteral("".join(self.random.choices(LITERAL_PIECES, k=count)))
            if fits(as_intermediate(literal.text)):
                return literal

    def string_literal(self):
        """Fits everywhere."""
        return self.literal_of(lambda text: not OPERATOR_BETWEEN_BLANKS.search(text)
                               and not STORE.search(text))

    def element_literal(self):
        """Fits into an array's element."""
        return self.literal_of(lambda text: not STORE.search(text))

    def any_string_literal(self):
        """Fits as an argument, behind return, and at the beginning of a print or concatenation."""
        return self.literal_of(lambda text: True)

    def string(self, depth):
        """Uses at most `strings_left` variables and calls, lest strings double in loops."""
        if depth <= 0:
            return self.string_leaf()
        return self.weighted([
            (30, self.string_leaf),
            (40, lambda: Binary("+", self.string_start(depth), self.string(depth - 1))),
            (10, lambda: self.string_call(depth)),
        ])()

    def string_start(self, depth):
        return self.any_string_literal() if self.chance(0.2) else self.string(depth - 1)

    def string_leaf(self):
        if self.strings_left <= 0:
            return self.string_literal()
        self.strings_left -= 1
        return self.leaf("string", self.string_literal)

    def string_call(self, depth):
        if self.strings_left <= 0:
            return self.string_literal()
        self.strings_left -= 1
        return self.called("string", depth) or self.string_literal()

    # Conditions and compound assignments are not typed: nothing with a result may be called there.

    def without_calls(self, make):
        allowed, self.calls_allowed = self.calls_allowed, False
        result = make()
        self.calls_allowed = allowed
        return result

    def condition(self, depth=None):
        if depth is None:
            depth = self.random.choice([1, 1, 2, 2, 3])
        return self.without_calls(lambda: self.weighted([
            (90, lambda: self.truth(depth)),
            (4, lambda: self.double_truth(depth)),
            (3, self.string_truth),
        ])())

    def truth(self, depth):
        """A condition whose value is an integer."""
        depth -= 1
        rows = [
            (32, lambda: self.comparison(self.integer, depth)),
            (16, lambda: self.comparison(self.double, depth)),
            (8, lambda: self.comparison(self.character, depth)),
            (14, lambda: self.boolean(depth)),
            (6, lambda: self.integer(depth)),
            (2, lambda: self.character(depth)),
            (3, lambda: Binary(self.random.choice(tree.COMPARISONS), self.integer(depth),
                               self.character(depth))),
            (2, self.bits_compared),
        ]
        if depth > 0:
            rows += [(16, lambda: self.binary(tree.LOGICAL, self.truth, depth)),
                     (8, lambda: Unary("!", self.truth(depth)))]
        return self.weighted(rows)()

    def bits_compared(self):
        """An int variable's bits compared as a double."""
        numbers = self.scalars("int") + self.scalars("boolean")
        if not numbers:
            return self.boolean_literal()
        sides = [self.double(1), Name(self.random.choice(numbers))]
        self.random.shuffle(sides)
        return Binary(self.random.choice(tree.COMPARISONS), *sides)

    def double_truth(self, depth):
        """True exactly for the bits of 0; a literal behind ! is no integer and would be refused."""
        value = self.double(depth)
        if self.chance(0.5):
            value = Unary("!", value)
        if isinstance(value, Unary) and isinstance(value.operand, DoubleLiteral):
            return value.operand
        return value

    def string_truth(self):
        """Addresses: only what is sure to be one and the same, or not, is compared."""
        sides = [self.string_literal(), self.string_literal()]
        variables = self.scalars("string")
        if variables:
            name = Name(self.random.choice(variables))
            if self.chance(0.2):
                return name
            sides = [name, self.random.choice([name, self.string_literal()])]
        return Binary(self.random.choice(["==", "!="]), *sides)
