void main() {
    double a = 2.0 * 3.0;
    double b = 1.0 / 4.0;
    double c = 2.0 + 0.0;
    print(a, " ", b, " ", c, "\n");
}
