void f(double d) {
}

void main() {
    f(2.0);
    double a = 2.0 * 3.0;
    double b = -2.0;
}
