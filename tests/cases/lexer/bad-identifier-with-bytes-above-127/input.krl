void main() { int é = 1; }
