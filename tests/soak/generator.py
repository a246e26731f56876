"""Makes random model programs: well typed, sure to end, and free of whatever would trap, read what
was never set, or run into one of the places where the language refuses what one would write.

The odd but well-defined corners are entered on purpose: 64-bit wrap-around, NaN, comparisons of
doubles used as doubles, a bare array name for its first element, conditions of mixed types, ...
"""

import random as random_module

from expressions import TYPES, TYPE_WEIGHTS
from interpreter import Interpreter, LimitError
from render import Renderer
from statements import Body
from tree import Function, Program, Variable
from vocabulary import FUNCTION_WORDS, WORDS

MAX_INTEGER_PARAMETERS = 6
MAX_DOUBLE_PARAMETERS = 8
RECURSIONS = [(2, 4), (1, 30)]  # recursive calls in one body, and the depth of the first call

FUNCTION_COST = 150
RECURSIVE_COST = 40
MAIN_COST = 4000


class Generator:
    """Makes one program; the same seed gives the same program."""

    def __init__(self, random):
        self.random = random
        self.functions = []

    def program(self):
        for _ in range(self.random.choice([1, 2, 3, 4, 5, 6])):
            self.add_group()
        main = Function("main", "void", [])
        Body(self.random, main, self.functions, MAIN_COST).write_main(
            self.random.randrange(14, 34))
        functions = self.functions + [main]
        self.random.shuffle(functions)
        return Program(functions)

    def add_group(self):
        """One function, or one or two that call themselves and each other."""
        if self.random.random() < 0.7:
            function = self.declare(0)
            body = Body(self.random, function, self.functions, FUNCTION_COST)
            body.write_function(self.random.randrange(2, 9))
            function.cost = body.cost + 1
            self.functions.append(function)
            return
        branches, depth = self.random.choice(RECURSIONS)
        group = [self.declare(depth, index) for index in range(self.random.choice([1, 1, 2]))]
        costs = []
        for function in group:
            body = Body(self.random, function, self.functions, RECURSIVE_COST, group, branches)
            body.write_function(self.random.randrange(2, 9))
            costs.append(body.cost + 1)
        calls = sum(branches**level for level in range(depth + 1))
        for function in group:
            function.cost = max(costs) * calls
        self.functions += group

    def declare(self, max_depth, index=0):
        pick = self.random
        name = pick.choice(FUNCTION_WORDS) + pick.choice(["", "It", "All"])
        name += str(len(self.functions) + index)
        return_type = pick.choices(TYPES + ["void"], TYPE_WEIGHTS + [25])[0]
        types = self.parameter_types(max_depth > 0)
        names = pick.sample(WORDS, len(types))
        parameters = [Variable(name, type_name) for name, type_name in zip(names, types)]
        return Function(name, return_type, parameters, max_depth=max_depth)

    def parameter_types(self, is_recursive):
        """At most as many of each class as there are registers for them."""
        pick = self.random
        doubles, others = pick.choice([(0, 0), (0, 1), (1, 1), (0, 2), (2, 1), (1, 2), (0, 3)])
        if pick.random() < 0.15:
            doubles = pick.randrange(MAX_DOUBLE_PARAMETERS + 1)
            others = pick.randrange(MAX_INTEGER_PARAMETERS + 1)
        if pick.random() < 0.05:
            doubles, others = MAX_DOUBLE_PARAMETERS, MAX_INTEGER_PARAMETERS
        if is_recursive and others == MAX_INTEGER_PARAMETERS:
            others -= 1
        integer_class = [type_name for type_name in TYPES if type_name != "double"]
        types = ["double"] * doubles + [pick.choice(integer_class) for _ in range(others)]
        pick.shuffle(types)
        return ["int"] * is_recursive + types


def generate(seed):
    """The source of the program of this seed and what it must print, both as bytes."""
    attempt = 0
    while True:
        random = random_module.Random(seed * 1000003 + attempt)
        program = Generator(random).program()
        source = Renderer(random).program(program)
        try:
            return source.encode("latin-1"), Interpreter().run(program).encode("latin-1")
        except LimitError:
            attempt += 1
