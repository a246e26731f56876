void main() {
    double d = 1000000000000000.5;
}
