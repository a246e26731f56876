void f(double d) {
}

void g(int a, string b, boolean c) {
}

void v() {
}

void main() {
    f(1);
    g(1.5, 2, 3);
    g(1, 2, 3);
    g(1, "s", 'c');
    f(nothing);
    f(v());
    f(
        1);
}
