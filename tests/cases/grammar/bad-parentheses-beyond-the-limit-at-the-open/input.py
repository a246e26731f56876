"""An initializer in 9,988 pairs of parentheses: the last `(` would be entry 10,000 of the stack."""
depth = 9988
print("void main() {\nint x =\n" + "(" * depth)
print("7")
print(")" * depth)
print(";\nprint(x);\n}")
