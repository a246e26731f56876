void main() {
    double a = 1.5;
    double b = a + 2.5;
    b = a - b;
    b = 0.25 * a;
    b = a / 2.5;
}
