void f(int a) {
int a = 1;
}
void main() { }
