"""Programs that are large in one way each: what the compiler has to stay linear on.

`INPUTS` lists them; `Input.text(n)` is the source for the size n, in the unit that `Input.unit`
names. The tests of the limits check what the compiler makes of them, the benchmark how its time
grows.

The depth of nesting has a limit of its own, the parser's stack: see `deepest`.
"""

from dataclasses import dataclass
from typing import Callable

# The parser's stack has to stay below this many entries, its start state included.
STACK_ENTRIES = 10_000
# What is on it inside of main's braces: the start state, external_list, type, name, "(",
# param_list_opt, ")", "{" and statement_list.
ENTRIES_IN_MAIN = 9


@dataclass(frozen=True)
class Input:
    name: str
    size: int
    unit: str
    text: Callable[[int], str]
    compiles: bool = True


@dataclass(frozen=True)
class Nesting:
    """A statement that can be nested to any depth, and what that needs of the parser's stack."""

    name: str
    entries_per_level: int
    entries_inside: int  # at the innermost level, and around the outermost one
    statement: Callable[[int], str]

    def deepest(self):
        """The greatest depth that the parser accepts inside of main."""
        free = STACK_ENTRIES - 1 - ENTRIES_IN_MAIN - self.entries_inside
        return free // self.entries_per_level

    def text(self, depth, repetitions=1):
        statements = f"    {self.statement(depth)}\n" * repetitions
        return in_main(f"    int x = 3;\n{statements}    print(x);\n",
                       "int f(int a) {\n    return a + 1;\n}\n")


def in_main(body, before=""):
    return f"{before}void main() {{\n{body}}}\n"


def functions(n):
    each = "".join(f"int f{i}(int a) {{\n    return a + {i};\n}}\n" for i in range(n))
    return in_main(f"    int first = f0(7);\n    int last = f{n - 1}(7);\n"
                   '    print(first, " ", last);\n', each)


def statements(n):
    return in_main("    int x = 0;\n" + "    x += 3;\n" * n + "    print(x);\n")


def local_variables(n):
    return in_main("    int total = 0;\n" + "".join(f"    int v{i} = {i};\n" for i in range(n)) +
                   "".join(f"    total += v{i};\n" for i in range(n)) + "    print(total);\n")


def blocks(n):
    """Each conditional makes two blocks; every second one is taken."""
    conditions = "".join(f"    if (x <= {i}) {{\n        x += 2;\n    }}\n" for i in range(n // 2))
    return in_main("    int x = 0;\n" + conditions + "    print(x);\n")


def strings(n):
    return in_main("".join(f'    print("string {i}\\n");\n' for i in range(n)))


def doubles(n):
    """The sum of 0.5, 1.5, ... is half of the square of their number, without rounding."""
    return in_main("    double x = 0.5;\n" +
                   "".join(f"    x = x + {i}.5;\n" for i in range(1, n)) + "    print(x);\n")


def chain(n):
    return in_main("    int x = 1" + " + 1" * (n - 1) + ";\n    print(x);\n")


def string_literal(n):
    return in_main('    print("' + "abcdefghij" * (n // 10) + '");\n')


def line_comment(n):
    return in_main(f"    # {'comment ' * (n // 8)}\n    print(1);\n")


def block_comment(n):
    return in_main(f"    #{{ {'}' * 3} one long line: {'comment ' * (n // 16)}\n" +
                   f"{'many lines }' * 5}\n" * (n // 2 // 61) + "}#\n    print(1);\n")


def unclosed_comments(n):
    """Without an end each of them is a comment up to the end of its line."""
    return in_main("    int x = 0;\n" + "    x += 3; #{ never closed\n" * n + "    print(x);\n")


def array_elements(n):
    elements = ", ".join(map(str, range(n)))
    return in_main(f"    int a[{n}] = {{{elements}}};\n    print(a[{n - 1}]);\n")


def elseif_arms(n):
    """The arms behind the `if`; the last one is taken."""
    arms = "".join(f" elseif (x == {i}) {{\n        x = {i + 1};\n    }}" for i in range(1, n + 1))
    return in_main(f"    int x = {n};\n    if (x == 0) {{\n        x = 1;\n    }}" + arms +
                   " else {\n        x = 0;\n    }\n    print(x);\n")


def array_accesses(n):
    """Half of them write, by a variable's index, and half of them read, by a literal's."""
    pairs = "".join(f"    a[i] = {i};\n    total += a[{i % 5}];\n" for i in range(n // 2))
    return in_main("    int a[5] = {1, 2, 3, 4, 5};\n    int i = 2;\n    int total = 0;\n" + pairs +
                   "    print(total);\n")


def semantic_errors(n):
    return in_main("".join(f"    missing{i} = 1;\n" for i in range(n)))


def lexical_errors(n):
    return "$\n" * n + in_main("    print(1);\n")


INPUTS = [
    Input("functions", 100_000, "functions", functions),
    Input("statements", 1_000_000, "statements in one function", statements),
    Input("locals", 50_000, "locals in one function", local_variables),
    Input("blocks", 100_000, "blocks in one function", blocks),
    Input("strings", 100_000, "distinct strings", strings),
    Input("doubles", 100_000, "distinct doubles", doubles),
    Input("chain", 1_000_000, "operands in one chain", chain),
    Input("string-literal", 50_000_000, "bytes in one string literal", string_literal),
    Input("line-comment", 50_000_000, "bytes in one line comment", line_comment),
    Input("block-comment", 50_000_000, "bytes in one block comment", block_comment),
    Input("unclosed-comments", 100_000, "block comments never closed", unclosed_comments),
    Input("array-elements", 1_000_000, "elements that initialise an array", array_elements),
    Input("elseif-arms", 20_000, "elseif arms", elseif_arms),
    Input("array-accesses", 100_000, "array accesses", array_accesses),
    Input("semantic-errors", 100_000, "semantic diagnostics", semantic_errors, compiles=False),
    Input("lexical-errors", 100_000, "lexical diagnostics", lexical_errors, compiles=False),
]

NESTINGS = [
    # The target and "=" around; the inner expression and its ")".
    Nesting("parentheses", 1, 4, lambda d: f"x = {'(' * d}x{')' * d};"),
    # The target and "=" around; the name inside.
    Nesting("unary-operators", 1, 3, lambda d: f"x = {'- ' * d}x;"),
    # One operand, "+" and "(" a level; the rest as with parentheses.
    Nesting("right-sums", 3, 4, lambda d: f"x = {'1 + (' * d}x{')' * d};"),
    # The callee and "(" a level; the target and "=" around, the arguments and ")" inside.
    Nesting("calls", 2, 4, lambda d: f"x = {'f(' * d}x{')' * d};"),
    # "{" and statement_list a level; the target, "=" and the literal inside.
    Nesting("nested-blocks", 2, 3, lambda d: "{" * d + "x = 4;" + "}" * d),
    # "if", "(", the condition, ")", "{" and statement_list a level.
    Nesting("nested-ifs", 6, 3, lambda d: "if (x == 3) {" * d + "x = 4;" + "}" * d),
    Nesting("nested-loops", 6, 3, lambda d: "while (x == 3) {" * d + "x = 4;" + "}" * d),
]
