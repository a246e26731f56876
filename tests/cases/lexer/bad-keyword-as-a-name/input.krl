void main() { int print = 1; }
