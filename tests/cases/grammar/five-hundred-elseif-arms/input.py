"""A list of arms, of which the last one is taken."""
print("void main() { int x = 500; if (x == 0) { }")
for i in range(1, 501):
    print(f"elseif (x == {i}) {{ print({i}); }}")
print("}")
