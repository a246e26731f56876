void main() {
    double d = 0.5;
    d++;
}
