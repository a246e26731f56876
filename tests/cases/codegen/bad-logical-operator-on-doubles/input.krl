void main() {
    double d = 1.5;
    double e = d && 0.5;
}
