"""More statements in one block than the parser's stack has entries."""
print("void main() {")
print("{ }" * 11000)
print("print(1);")
print("}")
