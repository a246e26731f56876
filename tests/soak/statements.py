"""Random statements and whole function bodies."""

import tree
from expressions import OPERATOR_BETWEEN_BLANKS, Expressions, as_intermediate
from tree import (ArrayDeclaration, Assignment, Binary, Block, BooleanLiteral, Break, CallStatement,
                  Cast, CharacterLiteral, Continue, Declaration, DoubleLiteral, Element, Exit, For,
                  If, IntLiteral, Name, Print, Return, Step, StringLiteral, Unary, While)

CASTS = {  # target: sources
    "double": ["int"],
    "character": ["int"],
    "int": ["character"],
    "string": ["character", "int", "double", "boolean"],
}


class Body(Expressions):
    """Generates the body of one function; `nesting` and `loops` count the blocks around a place."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.nesting = 0
        self.loops = 0
        self.simple_statements = [
            (18, self.declaration), (6, self.array_declaration), (4, self.index_declaration),
            (3, self.divisor_declaration), (4, self.special_doubles), (18, self.assignment),
            (10, self.compound_assignment), (7, self.step), (16, self.print),
            (6, self.call_statement),
        ]
        self.compound_statements = [
            (12, self.branch), (8, self.counting_for), (4, self.counting_while),
            (3, self.fueled_while), (3, self.endless_loop), (2, self.double_loop),
            (2, self.character_loop), (3, self.guarded_block), (2, self.bare_block),
            (1, self.string_builder), (8, self.guarded_leave),
        ]

    # Statements; each generator gives a list of them

    def statements(self, count):
        result = []
        for _ in range(count):
            self.cost += self.multiplier
            self.strings_left = 1 if self.multiplier > 1 else 3
            compound = self.nesting < 3 and self.chance(0.22)
            rows = self.compound_statements if compound else self.simple_statements
            result += self.weighted(rows)()
            if self.cost > self.limit:
                break
        return result

    def block(self, *prefix, count=None, freeze=()):
        """A nested block behind some given statements; it leaves the frozen variables alone."""
        self.scopes.append([])
        self.nesting += 1
        for variable in freeze:
            variable.frozen += 1
        if count is None:
            count = self.random.choice([1, 2, 2, 3, 4])
        statements = list(prefix) + self.statements(count)
        for variable in freeze:
            variable.frozen -= 1
        self.nesting -= 1
        self.scopes.pop()
        return Block(statements)

    def declaration(self):
        type_name = self.pick_type()
        declarators = []
        for _ in range(self.random.choice([1, 1, 1, 1, 2, 3])):
            value = self.cast_to(type_name) if self.chance(0.2) else None
            value = value or self.assigned(type_name)
            variable = self.new_variable(type_name)
            declarators.append((variable, value))
            self.enter(variable)
        return [Declaration(type_name, declarators)]

    def assigned(self, type_name):
        if type_name == "double" and self.chance(0.06):
            return self.odd_double(self.random.choice([1, 2]))
        return self.expression(type_name)

    def cast_to(self, type_name):
        """A cast of a variable or literal, or None where the type has none."""
        if type_name not in CASTS:
            return None
        source = self.random.choice(CASTS[type_name])
        names = [Name(variable) for variable in self.visible(source)]
        if names and self.chance(0.7):
            return Cast(type_name, self.random.choice(names))
        if source == "boolean":
            return None
        literal = {"int": self.integer_literal, "double": self.double_literal,
                   "character": self.character_literal}[source]
        return Cast(type_name, literal())

    def array_declaration(self):
        """An array of literal or variable size, of which every element is set."""
        type_name = self.pick_type()
        size = self.random.choice([1, 2, 3, 3, 4, 5, 6, 12])
        array = self.new_variable(type_name, size=size)
        before = []
        size_node = IntLiteral(str(size))
        if self.chance(0.35):
            length = self.new_variable("int")
            before = [Declaration("int", [(length, IntLiteral(str(size)))])]
            size_node = Name(length)
            self.enter(length)
        elements = []
        if self.chance(0.65):
            given = size if self.chance(0.8) else self.random.randrange(1, size + 1)
            elements = [self.array_element(type_name) for _ in range(given)]
        ghosts = []
        if self.chance(0.08):
            known = [variable.name for scope in self.scopes for variable in scope]
            ghosts = [(self.random.choice(known + ["ghost"]), self.integer_literal())]
        declaration = ArrayDeclaration(array, size_node, elements, ghosts)
        after = self.fill(array, len(elements))
        self.enter(array)
        return before + [declaration] + after

    def array_element(self, type_name):
        if type_name == "string" and self.chance(0.5):
            return self.element_literal()
        return self.assigned(type_name)

    def fill(self, array, start):
        """Sets the elements from `start` on."""
        count = array.size - start
        if count > 1 and self.chance(0.7):
            index = self.new_variable("int")
            value = self.without_calls(lambda: self.expression(array.type))
            loop = For(Declaration("int", [(index, IntLiteral(str(start)))]),
                       Binary("<", Name(index), IntLiteral(str(array.size))),
                       Step(Name(index), "++"),
                       Block([Assignment(Element(array, Name(index)), "=", value)]))
            self.cost += self.multiplier * count
            self.enter(index)
            return [loop]
        return [Assignment(Element(array, IntLiteral(str(index))), "=", self.assigned(array.type))
                for index in range(start, array.size)]

    def index_declaration(self):
        """A variable that stays within the bounds of arrays."""
        size = self.random.randrange(1, 7)
        if self.chance(0.1):
            code = self.random.randrange(size)
            variable = self.new_variable("character", bounds=(code, code), frozen=1)
            self.enter(variable)
            return [Declaration("character", [(variable,
                                               Cast("character", IntLiteral(str(code))))])]
        value = self.expression("int")
        variable = self.new_variable("int", bounds=(0, size - 1), frozen=1)
        name, limit = Name(variable), IntLiteral(str(size))
        remainder = Binary("-", name, Binary("*", Binary("/", name, limit), limit))
        lift = If([(Binary("<", name, IntLiteral("0")), Block([Assignment(name, "+=", limit)]))])
        self.enter(variable)
        return [Declaration("int", [(variable, value)]), Assignment(name, "=", remainder), lift]

    def divisor_declaration(self):
        value = self.expression("int")
        variable = self.new_variable("int", divides=True, frozen=1)
        name = Name(variable)
        trap = Binary("||", Binary("==", name, IntLiteral("0")),
                      Binary("==", name, Unary("-", IntLiteral("1"))))
        repair = If([(trap, Block([Assignment(name, "=", IntLiteral("7"))]))])
        self.enter(variable)
        return [Declaration("int", [(variable, value)]), repair]

    def special_doubles(self):
        """Zeros, infinities and NaN, which have no literals."""
        zero = self.new_variable("double")
        other = self.new_variable("double")
        name = Name(zero)
        value = self.random.choice([
            Binary("/", name, name), Binary("/", DoubleLiteral("1.5"), name),
            Binary("/", Unary("-", DoubleLiteral("0.5")), name),
            Binary("*", name, Unary("-", DoubleLiteral("2.5"))), Unary("-", name)])
        self.enter(zero, other)
        compared = Binary(self.random.choice(tree.COMPARISONS), Name(other),
                          self.without_calls(lambda: self.double(1)))
        if self.chance(0.5):
            compared.left, compared.right = compared.right, compared.left
        return [Declaration("double", [(zero, Cast("double", IntLiteral("0")))]),
                Declaration("double", [(other, value)]),
                If([(compared, self.block(count=1))], Block(self.in_scope(self.print)))]

    def assignment(self):
        type_name = self.pick_type()
        target = self.target(type_name)
        if not target:
            return self.declaration()
        if isinstance(target, Element):
            value = self.array_element(type_name)
        else:
            value = self.assigned(type_name)
        return [Assignment(target, "=", value, parenthesized=self.chance(0.05))]

    def compound_assignment(self):
        type_name = self.random.choice(["int", "int", "double", "character", "string"])
        target = self.target(type_name)
        if not target:
            return self.declaration()
        if type_name == "string":
            self.strings_left -= 1
            return [Assignment(target, "+=", self.without_calls(lambda: self.string(1)))]
        source = type_name
        if type_name != "double" and self.chance(0.05):
            source = self.random.choice(["int", "character", "boolean"])
        value = self.without_calls(lambda: self.expression(source))
        return [Assignment(target, self.random.choice(["+=", "-="]), value,
                           parenthesized=self.chance(0.05))]

    def step(self):
        target = self.target(self.random.choice(["int", "int", "int", "character"]))
        if not target:
            return self.declaration()
        return [Step(target, self.random.choice(["++", "--"]), self.chance(0.5), self.chance(0.1))]

    def print(self):
        arguments = []
        if self.chance(0.3):
            arguments.append(self.any_string_literal())
        for _ in range(self.random.randrange(4)):
            type_name = self.pick_type()
            self.strings_left = 2
            if type_name == "double" and self.chance(0.1):
                arguments.append(self.odd_double(self.random.choice([1, 2])))
            else:
                arguments.append(self.expression(type_name))
        return [Print(arguments + [self.line_end(not arguments)])]

    def line_end(self, is_first):
        """What ends the text of a print: every print makes whole lines."""
        if self.chance(0.15):
            return CharacterLiteral("\\n")
        literal = self.any_string_literal() if is_first else self.string_literal()
        end = StringLiteral(literal.spelling + "\\n")
        if not is_first and OPERATOR_BETWEEN_BLANKS.search(as_intermediate(end.text)):
            return StringLiteral("\\n")
        return end

    def call_statement(self):
        call = self.called("void", 3)
        return [CallStatement(call)] if call else self.print()

    # Compound statements

    def branch(self):
        arms = [(self.condition(), self.block())]
        while len(arms) < 4 and self.chance(0.3):
            arms.append((self.condition(), self.block()))
        otherwise = self.block() if self.chance(0.5) else None
        return [If(arms, otherwise)]

    def guarded_block(self):
        """Divides by a variable where it is known to be positive."""
        variables = [variable for variable in self.scalars("int") if not variable.frozen]
        if not variables:
            return self.branch()
        variable = self.random.choice(variables)
        variable.divides = True
        body = self.block(freeze=[variable])
        variable.divides = False
        return [If([(Binary(">", Name(variable), IntLiteral("0")), body)])]

    def bare_block(self):
        return [self.block()]

    def loop_body(self, trips, *prefix, freeze=()):
        multiplier = self.multiplier
        self.multiplier *= max(trips, 1)
        self.loops += 1
        body = self.block(*prefix, freeze=freeze)
        self.loops -= 1
        self.multiplier = multiplier
        return body

    def trips(self):
        return self.random.choice([0, 1, 2, 3, 3, 4, 5, 6] if self.multiplier < 10 else [1, 2, 3])

    def counting_for(self):
        trips = self.trips()
        stride = self.random.choice([1, 1, 1, 1, 2, 3])
        low = self.random.choice([0, 0, 0, 1, -2, 5])
        sizes = [variable.size for scope in self.scopes for variable in scope if variable.size]
        if sizes and self.chance(0.5):
            low, stride, trips = 0, 1, self.random.choice(sizes)
        last = low + (trips - 1) * stride  # the counter's values run from low to last
        upwards = self.chance(0.75)
        counter = self.new_variable("int")
        first, end = (low, last + stride) if upwards else (last, low - stride)
        counter.bounds = (low, last) if trips else None
        update = self.counter_update(Name(counter), stride, upwards)
        before, start = self.counter_start(counter, self.number(first))
        condition = self.counter_condition(Name(counter), end, upwards)
        self.scopes.append([counter])
        body = self.loop_body(trips, freeze=[counter])
        self.scopes.pop()
        counter.bounds = None
        self.enter(counter)  # it lives on behind the loop
        return before + [For(start, condition, update, body)]

    def counter_start(self, counter, first):
        """Statements before the loop and its first part; together they set the counter."""
        unset = Declaration("int", [(counter, self.integer_literal())])
        other = self.new_variable("int")
        return self.weighted([
            (70, lambda: ([], Declaration("int", [(counter, first)]))),
            (10, lambda: ([], self.two_counters(counter, first, other))),
            (10, lambda: ([unset], Assignment(Name(counter), "=", first))),
            (10, lambda: ([Declaration("int", [(counter, first)])], None)),
        ])()

    def two_counters(self, counter, first, other):
        value = self.expression("int")
        self.enter(other)
        return Declaration("int", [(counter, first), (other, value)])

    @staticmethod
    def number(value):
        literal = IntLiteral(str(abs(value)))
        return Unary("-", literal) if value < 0 else literal

    def counter_update(self, name, stride, upwards):
        sign = "+" if upwards else "-"
        amount = IntLiteral(str(stride))
        updates = [Assignment(name, sign + "=", amount),
                   Assignment(name, "=", Binary(sign, name, amount))]
        if stride == 1:
            updates += [Step(name, sign * 2, self.chance(0.5), self.chance(0.15))] * 4
        return self.random.choice(updates)

    def counter_condition(self, name, end, upwards):
        limit = self.number(end)
        before, behind = ("<", ">") if upwards else (">", "<")
        return self.weighted([
            (50, lambda: Binary(before, name, limit)),
            (8, lambda: Binary(behind, limit, name)),
            (8, lambda: Unary("!", Binary(behind + "=", name, limit))),
            (8, lambda: Binary("!=", name, limit)),
            (5, lambda: Binary("-", name, limit)),
            (5, lambda: Binary("&&", Binary(before, name, limit), BooleanLiteral(True))),
            (3, lambda: Unary("!", Unary("!", Binary(before, name, limit)))),
        ])()

    def counting_while(self):
        trips = self.trips()
        counter = self.new_variable("int", bounds=(0, max(trips, 1)), frozen=1)
        self.enter(counter)
        start = Declaration("int", [(counter, IntLiteral("0"))])
        body = self.loop_body(trips, Assignment(Name(counter), "+=", IntLiteral("1")))
        return [start, While(Binary("<", Name(counter), IntLiteral(str(trips))), body)]

    def fueled_while(self):
        """A loop that runs while something holds, but not for ever."""
        trips = self.trips()
        fuel = self.new_variable("int", bounds=(0, trips), frozen=1)
        self.enter(fuel)
        start = Declaration("int", [(fuel, IntLiteral(str(trips)))])
        some = self.without_calls(lambda: self.truth(2))
        condition = Binary("&&", some, Binary(">", Name(fuel), IntLiteral("0")))
        body = self.loop_body(trips, Step(Name(fuel), "--"))
        return [start, While(condition, body)]

    def endless_loop(self):
        trips = self.trips()
        count = self.new_variable("int", bounds=(0, trips + 1), frozen=1)
        self.enter(count)
        start = Declaration("int", [(count, IntLiteral("0"))])
        leave = If([(Binary(">", Name(count), IntLiteral(str(trips))), Block([Break()]))])
        first = self.called("void", 2)
        multiplier = self.multiplier
        self.multiplier *= trips + 1
        update = self.called("void", 2)
        self.multiplier = multiplier
        body = self.loop_body(trips + 1, Step(Name(count), "++", True), leave)
        if self.chance(0.5):
            first, update = (CallStatement(call) if call else None for call in (first, update))
            return [start, For(first, None, update, body)]
        forever = self.random.choice([BooleanLiteral(True), IntLiteral("1"),
                                      Unary("!", BooleanLiteral(False))])
        return [start, While(forever, body)]

    def double_loop(self):
        """Counts with a double; its steps are sums of powers of two, so the bound is met."""
        trips = self.trips()
        number = self.new_variable("double", frozen=1)
        self.enter(number)
        limit = DoubleLiteral(f"{trips * 0.75 + 0.125:.3f}")
        start = Declaration("double", [(number, DoubleLiteral("0.25"))])
        body = self.loop_body(trips + 1, Assignment(Name(number), "+=", DoubleLiteral("0.75")))
        return [start, While(Binary("<", Name(number), limit), body)]

    def character_loop(self):
        trips = self.trips()
        letter = self.new_variable("character", frozen=1)
        self.enter(letter)
        start = Declaration("character", [(letter, CharacterLiteral("a"))])
        condition = Binary("<", Name(letter), CharacterLiteral(chr(ord("a") + trips)))
        body = self.loop_body(trips)
        letter.frozen = 0
        return [For(start, condition, Step(Name(letter), "++", self.chance(0.5)), body)]

    def string_builder(self):
        """Grows a string in many steps, to have something to reclaim."""
        if self.multiplier > 1:
            return self.string_step()
        text = self.new_variable("string")
        count = self.new_variable("int")
        trips = self.random.choice([20, 60, 150])
        self.cost += trips
        operands = [Name(text), self.random.choice([StringLiteral("xy"), self.string_literal()])]
        self.random.shuffle(operands)
        body = Block([Assignment(Name(text), "=", Binary("+", *operands))])
        self.enter(text, count)
        return [Declaration("string", [(text, self.string_literal())]),
                For(Declaration("int", [(count, IntLiteral("0"))]),
                    Binary("<", Name(count), IntLiteral(str(trips))),
                    Step(Name(count), "++"), body),
                Print([Name(text), StringLiteral("\\n")])]

    def string_step(self):
        targets = [variable for variable in self.scalars("string") if not variable.frozen]
        if not targets:
            return self.print()
        name = Name(self.random.choice(targets))
        return [Assignment(name, "+=", self.string_literal())]

    def guarded_leave(self):
        """Leaves a loop, the function or, now and then, the program from the middle."""
        leave = self.leave()
        if not leave:
            return self.branch()
        body = [*self.in_scope(self.print), leave]
        if self.chance(0.1):
            body += self.in_scope(self.assignment)  # never reached
        return [If([(self.condition(), Block(body))])]

    def leave(self):
        if self.loops and self.chance(0.85):
            return self.random.choice([Break, Continue])()
        in_main = self.function.name == "main"
        if in_main and not self.chance(0.12):
            return None
        if self.chance(0.1 if in_main else 0.03):
            argument = self.without_calls(lambda: self.integer(1)) if self.chance(0.5) else None
            return Exit(argument)
        return Return(self.result())

    def in_scope(self, make):
        """Statements at the end of a block, whose variables nobody else sees."""
        self.scopes.append([])
        statements = make()
        self.scopes.pop()
        return statements

    # Functions

    def result(self):
        """What the function returns; None for nothing."""
        type_name = self.function.return_type
        if type_name == "void":
            return None
        if type_name == "string" and self.chance(0.3):
            return self.any_string_literal()
        return self.expression(type_name)

    def write_function(self, count):
        prefix = []
        if self.group:
            depth = self.function.parameters[0]
            depth.frozen, depth.bounds = 1, (-9, self.function.max_depth)
            recursions, self.recursions = self.recursions, 0
            prefix = [If([(Binary("<=", Name(depth), IntLiteral("0")),
                           Block([Return(self.result())]))])]
            self.recursions = recursions
        statements = prefix + self.statements(count)
        self.strings_left = 2
        if self.function.return_type != "void":
            statements.append(Return(self.result()))
        elif self.chance(0.2):
            statements.append(Return())
        self.function.body = Block(statements)

    def write_main(self, count):
        start = [statement for _ in range(self.random.randrange(2, 6))
                 for statement in self.weighted([(3, self.declaration),
                                                 (1, self.array_declaration)])()]
        self.function.body = Block(start + self.statements(count) + self.final_state())

    def final_state(self):
        """Shows every variable that is set at the end."""
        shown = []
        for variable in self.scopes[0]:
            if variable.size is None:
                shown.append(Print([StringLiteral(variable.name + "="), Name(variable),
                                    StringLiteral("\\n")]))
                continue
            index = self.new_variable("int")
            line = Print([StringLiteral(variable.name + "["), Name(index), StringLiteral("]="),
                          Element(variable, Name(index)), StringLiteral("\\n")])
            shown.append(For(Declaration("int", [(index, IntLiteral("0"))]),
                             Binary("<", Name(index), IntLiteral(str(variable.size))),
                             Step(Name(index), "++"), Block([line])))
        return shown
