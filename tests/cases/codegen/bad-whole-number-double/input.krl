void main() {
    double sum = 0.0;
}
