void main() {
    double d = 0.5;
    if (d || d) {
    }
}
