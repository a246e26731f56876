void main() { int 9a = 1; }
