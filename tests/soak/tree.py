"""The syntax tree of a model program: what the generator builds, the renderer writes and the
interpreter runs.

Every expression has a `type`, the one that the language gives it: an operator has the type of its
operands, comparisons included.
"""

import dataclasses
import re
import typing

COMPARISONS = ("==", "!=", "<", ">", "<=", ">=")
LOGICAL = ("&&", "||")

ESCAPES = {"n": "\n", "t": "\t", "r": "\r", "b": "\b", "f": "\f", "0": "\0"}


def decode(spelling):
    """The text of a string or character literal, given what stands between its quotes."""
    return re.sub(r"\\(.)", lambda match: ESCAPES.get(match[1], match[1]), spelling,
                  flags=re.DOTALL)


@dataclasses.dataclass(eq=False)
class Variable:
    """A local variable or parameter; an array when it has a size.

    While it is `frozen` the generator assigns to it only in the pattern that froze it, so that
    `bounds`, if known, hold: such a variable may index, divide and count.
    """
    name: str
    type: str
    size: typing.Optional[int] = None
    frozen: int = 0
    bounds: typing.Optional[tuple] = None
    divides: bool = False


# Expressions


@dataclasses.dataclass(eq=False)
class IntLiteral:
    spelling: str
    type = "int"

    @property
    def value(self):
        """Literals are 32 bits wide although values have 64."""
        return (int(self.spelling) + 2**31) % 2**32 - 2**31


@dataclasses.dataclass(eq=False)
class DoubleLiteral:
    spelling: str
    type = "double"

    @property
    def text(self):
        """How the literal travels through the compiler: with at most 15 digits."""
        return format(float(self.spelling), ".15g")

    @property
    def is_whole(self):
        """Such a literal loses its point on the way, and what is left is taken for an integer."""
        return "." not in self.text


@dataclasses.dataclass(eq=False)
class BooleanLiteral:
    value: bool
    type = "boolean"


@dataclasses.dataclass(eq=False)
class CharacterLiteral:
    spelling: str
    type = "character"

    @property
    def code(self):
        """A tab and a carriage return have the codes of the letters that escape them."""
        character = decode(self.spelling) or "\0"
        return ord({"\t": "t", "\r": "r"}.get(character, character))


@dataclasses.dataclass(eq=False)
class StringLiteral:
    spelling: str
    type = "string"

    @property
    def text(self):
        return decode(self.spelling)


@dataclasses.dataclass(eq=False)
class Name:
    variable: Variable

    @property
    def type(self):
        return self.variable.type


@dataclasses.dataclass(eq=False)
class Element:
    variable: Variable
    index: typing.Union[IntLiteral, Name]

    @property
    def type(self):
        return self.variable.type


@dataclasses.dataclass(eq=False)
class Unary:
    operator: str
    operand: typing.Any

    @property
    def type(self):
        return self.operand.type


@dataclasses.dataclass(eq=False)
class Binary:
    operator: str
    left: typing.Any
    right: typing.Any

    @property
    def type(self):
        return self.left.type


@dataclasses.dataclass(eq=False)
class Call:
    function: "Function"
    arguments: list

    @property
    def type(self):
        return self.function.return_type


@dataclasses.dataclass(eq=False)
class Cast:
    """The whole initialiser of a scalar; its operand is a name or a literal."""
    type: str
    operand: typing.Any


# Statements


@dataclasses.dataclass(eq=False)
class Declaration:
    type: str
    declarators: list  # of (Variable, expression or Cast)


@dataclasses.dataclass(eq=False)
class ArrayDeclaration:
    variable: Variable
    size: typing.Union[IntLiteral, Name]
    elements: list
    ghosts: list  # (name, expression) after the array, which the language reads and forgets


@dataclasses.dataclass(eq=False)
class Assignment:
    target: typing.Union[Name, Element]
    operator: str  # = += -=
    value: typing.Any
    parenthesized: bool = False


@dataclasses.dataclass(eq=False)
class Step:
    target: typing.Union[Name, Element]
    operator: str  # ++ --
    prefix: bool = False
    parenthesized: bool = False


@dataclasses.dataclass(eq=False)
class CallStatement:
    call: Call


@dataclasses.dataclass(eq=False)
class Print:
    arguments: list


@dataclasses.dataclass(eq=False)
class Exit:
    argument: typing.Any = None


@dataclasses.dataclass(eq=False)
class Return:
    value: typing.Any = None


@dataclasses.dataclass(eq=False)
class Break:
    pass


@dataclasses.dataclass(eq=False)
class Continue:
    pass


@dataclasses.dataclass(eq=False)
class Block:
    statements: list


@dataclasses.dataclass(eq=False)
class If:
    arms: list  # of (condition, Block)
    otherwise: typing.Optional[Block] = None


@dataclasses.dataclass(eq=False)
class While:
    condition: typing.Any
    body: Block


@dataclasses.dataclass(eq=False)
class For:
    """Each part of the header may be None."""
    start: typing.Any
    condition: typing.Any
    update: typing.Any
    body: Block


# Programs


@dataclasses.dataclass(eq=False)
class Function:
    """`cost` bounds the statements that one call executes; the generator keeps it small."""
    name: str
    return_type: str
    parameters: list
    body: typing.Optional[Block] = None
    cost: int = 0
    max_depth: int = 0  # if it is recursive: then its first parameter counts the depth down


@dataclasses.dataclass(eq=False)
class Program:
    functions: list
