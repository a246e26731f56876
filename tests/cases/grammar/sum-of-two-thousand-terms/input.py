"""A sum that makes a tree as deep as it has terms."""
print("void main() { print(" + " + ".join(["1"] * 2000) + "); }")
