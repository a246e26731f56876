"""4,996 blocks in each other, the function's body included: the first `}` would be entry 10,000."""
depth = 4996
print("void main()" + "{" * depth + "\n" + "}" * depth)
