int x = 1,
y = 2;
void main() { }
int a[2];
void f(int x) {
int a = 1;
}
int f = 1;
void g(int f) { }
