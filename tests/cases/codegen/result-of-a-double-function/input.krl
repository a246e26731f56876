double f(int n) {
    return 0.5;
}

void main() {
    double b = f(2) + 1.5;
    exit();
}
