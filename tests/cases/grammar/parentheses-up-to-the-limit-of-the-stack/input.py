"""An initializer in 9,985 pairs of parentheses: the first `)` is entry 9,999 of the stack."""
depth = 9985
print("void main() {\nint x =\n" + "(" * depth)
print("7")
print(")" * depth)
print(";\nprint(x);\n}")
