int f() { return 1; }
void main() { int f = f(); print(f); }
