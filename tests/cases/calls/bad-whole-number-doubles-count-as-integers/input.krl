void f(double a, double b, double c, double d, double e, double g, double h) {
}

void main() {
    f(1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0);
}
