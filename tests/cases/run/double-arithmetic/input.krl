void main() {
    double a = 0.5;
    double b = a + 0.25;
    print(b, " ", b - 1.5, " ", b * a, " ", b / a, " ", -b, "\n");
}
