void f(int p) { }
void main() {
int x = 1, y = -x;
int a[2] = {x};
a[0] += 1;
x++;
}
