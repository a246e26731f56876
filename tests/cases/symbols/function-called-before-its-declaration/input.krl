void main() { print(f(1)); }
int f(int a) { return a; }
