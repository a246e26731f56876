void f(int a, double b, string c) { print(a, b, c); }
void main() { f(1, 0.5, "s"); }
