void main() {
    double x = 1.5;
    x = x[0];
}
