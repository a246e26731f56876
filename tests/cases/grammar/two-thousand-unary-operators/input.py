"""Unary operators that make a tree as deep as there are of them."""
print("void main() { int x = " + "- " * 2000 + "1; print(x); }")
