void f(int a,
int b,
double a) { }
void main() { }
