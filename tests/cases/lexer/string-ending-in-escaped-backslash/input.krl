void main() { print("a\\"); }
