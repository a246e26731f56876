"""A string literal and a name of 17,000 characters each."""
name = "n" * 17000
print('void main() { print("' + "a" * 17000 + '"); int ' + name + " = 7; print(" + name + "); }")
