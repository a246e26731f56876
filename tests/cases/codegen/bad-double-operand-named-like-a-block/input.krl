void main() {
    double d = 1.5;
    if (B7 > d) {
    }
}
