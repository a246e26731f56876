void f() { int n = 3; }
void main() {
int a[n];
}
