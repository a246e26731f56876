void f(int x) { double y = 0.5; print(x, y); }
void main() { double x = 1.5; int y = 2; f(y); print(x); }
