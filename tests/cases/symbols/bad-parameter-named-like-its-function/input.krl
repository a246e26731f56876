void f(int a,
int f) { }
void main() { }
