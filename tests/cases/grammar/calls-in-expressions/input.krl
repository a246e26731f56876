int f() { return 4; }
int g(int x) { return x; }
void main() {
int x = f() + 1;
x = g(f()) * f();
x = 1 + (f());
print(x);
}
