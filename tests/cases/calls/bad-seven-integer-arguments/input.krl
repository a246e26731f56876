void main() {
    f(1, true, 'c', "s", 5, 6, 7);
}

void f(int a, boolean b, character c, string d, int e, int g, int h) {
}
