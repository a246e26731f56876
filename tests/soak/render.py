"""Writes a model program as Krel source, with the parentheses that it needs and some that it does
not, and in varying layout."""

import tree

PRECEDENCE = {
    "||": 1, "&&": 2, "==": 3, "!=": 3, "<": 4, ">": 4, "<=": 4, ">=": 4, "+": 5, "-": 5, "*": 6,
    "/": 6,
}
COMMENTS = [
    ["# plain comment"],
    ["#"],
    ["# quotes \" ' and brackets }# { in a line comment"],
    ["#{ closed on its own line }# int never = 1; and all of this is comment"],
    ["#{ over", "   two lines }#"],
    ["#{", "   a pair of braces does not close it: }}# nor does {}", "   but three do }}}#"],
    ["#{ x }", "   } y; z }", "}#"],
]


class Renderer:
    """Renders one program; the random source only decides on looks."""

    def __init__(self, random):
        self.random = random
        self.lines = []
        self.depth = 0
        self.indent = random.choice(["    ", "  ", "\t"])
        self.tight = random.random() < 0.2
        self.comments = random.random() < 0.5
        self.writers = {
            tree.IntLiteral: lambda node: node.spelling,
            tree.DoubleLiteral: lambda node: node.spelling,
            tree.BooleanLiteral: lambda node: "true" if node.value else "false",
            tree.CharacterLiteral: lambda node: f"'{node.spelling}'",
            tree.StringLiteral: lambda node: f'"{node.spelling}"',
            tree.Name: lambda node: node.variable.name,
            tree.Element: lambda node: f"{node.variable.name}[{self.write(node.index)}]",
            tree.Unary: self.unary,
            tree.Binary: self.binary,
            tree.Call: lambda node: f"{node.function.name}({self.list(node.arguments)})",
            tree.Cast: lambda node: f"({node.type}) {self.write(node.operand)}",
        }
        self.simple = {  # statements that end in a semicolon
            tree.Declaration: self.declaration,
            tree.ArrayDeclaration: self.array_declaration,
            tree.Assignment: self.assignment,
            tree.Step: self.step,
            tree.CallStatement: lambda node: self.write(node.call),
            tree.Print: lambda node: f"print({self.list(node.arguments)})",
            tree.Exit: lambda node: f"exit({self.optional(node.argument)})",
            tree.Return: lambda node: f"return {self.optional(node.value)}".strip(),
            tree.Break: lambda node: "break",
            tree.Continue: lambda node: "continue",
        }
        self.compound = {
            tree.Block: self.block,
            tree.If: self.branch,
            tree.While: self.loop_while,
            tree.For: self.loop_for,
        }

    def program(self, program):
        for function in program.functions:
            parameters = ", ".join(f"{parameter.type} {parameter.name}"
                                   for parameter in function.parameters)
            self.open(f"{function.return_type} {function.name}({parameters})")
            self.statements(function.body)
            self.close()
            self.line("")
        return "\n".join(self.lines) + self.random.choice(["\n", ""])

    # Lines

    def line(self, text):
        self.lines.append(self.indent * self.depth + text if text else "")

    def open(self, head):
        if head and self.random.random() < 0.1:
            self.line(head)
            self.line("{")
        else:
            self.line(f"{head} {{".lstrip())
        self.depth += 1

    def close(self):
        self.depth -= 1
        self.line("}")

    def comment(self):
        if self.comments and self.random.random() < 0.08:
            for text in self.random.choice(COMMENTS):
                self.line(text)

    # Expressions

    def write(self, node):
        return self.writers[type(node)](node)

    def list(self, nodes):
        return ("," if self.tight else ", ").join(map(self.write, nodes))

    def optional(self, node):
        return "" if node is None else self.write(node)

    def operand(self, node, needs_parentheses):
        text = self.write(node)
        if needs_parentheses or self.random.random() < 0.04:
            return f"({text})"
        return text

    def unary(self, node):
        text = self.operand(node.operand, isinstance(node.operand, (tree.Binary, tree.Call)))
        apart = text[0] == node.operator or (not self.tight and self.random.random() < 0.1)
        return node.operator + (" " if apart else "") + text

    def binary(self, node):
        """Operators of one level group from the left."""
        level = PRECEDENCE[node.operator]

        def level_of(operand):
            return PRECEDENCE[operand.operator] if isinstance(operand, tree.Binary) else 9
        left = self.operand(node.left, level_of(node.left) < level)
        right = self.operand(node.right, level_of(node.right) <= level)
        if self.tight and right[0] not in "+-":
            return f"{left}{node.operator}{right}"
        return f"{left} {node.operator} {right}"

    # Statements

    def statements(self, block):
        for statement in block.statements:
            self.comment()
            self.statement(statement)

    def statement(self, node):
        if type(node) in self.simple:
            trailer = "  # done; }#" if self.comments and self.random.random() < 0.03 else ""
            self.line(self.simple[type(node)](node) + ";" + trailer)
        else:
            self.compound[type(node)](node)

    def declaration(self, node):
        declarators = ", ".join(f"{variable.name} = {self.write(value)}"
                                for variable, value in node.declarators)
        return f"{node.type} {declarators}"

    def array_declaration(self, node):
        text = f"{node.variable.type} {node.variable.name}[{self.write(node.size)}]"
        if node.elements:
            text += f" = {{{self.list(node.elements)}}}"
        return text + "".join(f", {name} = {self.write(value)}" for name, value in node.ghosts)

    def assignment(self, node):
        text = f"{self.write(node.target)} {node.operator} {self.write(node.value)}"
        return f"({text})" if node.parenthesized else text

    def step(self, node):
        target = self.write(node.target)
        text = node.operator + target if node.prefix else target + node.operator
        return f"({text})" if node.parenthesized else text

    def block(self, node):
        self.open("")
        self.statements(node)
        self.close()

    def branch(self, node):
        keyword = "if"
        for condition, body in node.arms:
            self.open(f"{keyword} ({self.write(condition)})")
            self.statements(body)
            self.close()
            keyword = "elseif"
        if node.otherwise:
            self.open("else")
            self.statements(node.otherwise)
            self.close()

    def loop_while(self, node):
        self.open(f"while ({self.write(node.condition)})")
        self.statements(node.body)
        self.close()

    def loop_for(self, node):
        start, update = (self.simple[type(part)](part) if part is not None else ""
                         for part in (node.start, node.update))
        self.open(f"for ({start}; {self.optional(node.condition)}; {update})")
        self.statements(node.body)
        self.close()
