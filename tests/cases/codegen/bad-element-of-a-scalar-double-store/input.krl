void main() {
    double x = 1.5;
    x[0] = 2.5;
}
