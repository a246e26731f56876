"""A name that begins just before byte 16,384, the size of the scanner's first buffer."""
start = "void main() { int "
print("#" + "x" * (16380 - len(start) - 2))
print(start + "straddling = 5; print(straddling); }")
