"""So many that to look for the end of each would take hours."""
print("void main() {")
print("#{\n" * 200000 + "print(1);")
print("}")
