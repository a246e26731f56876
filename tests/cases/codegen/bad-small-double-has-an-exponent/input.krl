void main() {
    double d = 0.00001;
}
