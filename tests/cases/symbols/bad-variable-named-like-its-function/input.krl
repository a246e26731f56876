void f() {
int f = 1;
}
void main() { }
