"""A function with 4,995 blocks in each other, its body included: the first `}` is entry 9,998 of the stack."""
depth = 4995
print("void main()" + "{" * depth + "\n" + "}" * depth)
