void main() {
    f(0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5);
}

void f(double a, double b, double c, double d, double e, double g, double h, double i, double j) {
}
