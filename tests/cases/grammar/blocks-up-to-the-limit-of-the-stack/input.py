"""4,995 blocks in each other, the function's body included: the first `}` is entry 9,998."""
depth = 4995
print("void main()" + "{" * depth + "\n" + "}" * depth)
