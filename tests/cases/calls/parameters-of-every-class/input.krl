void f(int a, double b, boolean c, character d, string e, double g) {
}

void main() {
}
