void f(int a, boolean b, character c, string d, int e, int g, int h) {
}

void main() {
}
