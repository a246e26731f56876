void f(int p) { int x = 1; }
void main() {
print(x);
print(p);
}
