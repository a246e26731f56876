"""An initializer in 9,987 pairs of parentheses: the literal would be entry 10,000 of the stack."""
depth = 9987
print("void main() {\nint x =\n" + "(" * depth)
print("7")
print(")" * depth)
print(";\nprint(x);\n}")
