void f(double a) {
    double x = -a;
    x = +a;
    x = !a;
    x = -0.5;
}

void main() {
}
