void f(int a, int b) {
    int x = a == b;
    x = a != b;
    x = a < b;
    x = a > b;
    x = a <= b;
    x = a >= b;
}

void main() {
}
