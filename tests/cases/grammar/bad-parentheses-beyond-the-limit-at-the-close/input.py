"""An initializer in 9,986 pairs of parentheses: the first `)` would be entry 10,000."""
depth = 9986
print("void main() {\nint x =\n" + "(" * depth)
print("7")
print(")" * depth)
print(";\nprint(x);\n}")
