void f(int n) {
int a[n];
}
void main() { }
