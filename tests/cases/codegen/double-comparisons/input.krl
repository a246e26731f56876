void f(double a, double b) {
    double x = a == b;
    x = a != b;
    x = a < b;
    x = a > b;
    x = a <= b;
    x = a >= b;
}

void main() {
}
