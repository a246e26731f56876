void main() { print("a\"b"); }
