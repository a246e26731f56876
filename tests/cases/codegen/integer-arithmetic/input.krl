void f(int a, int b) {
    int x = a + b;
    x = a - 7;
    x = 7 * b;
    x = a / b;
}

void main() {
}
