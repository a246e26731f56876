int x = 1;
void f(int y) {
int x = 2;
}
void main() {
int x = 3;
}
