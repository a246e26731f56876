int f(int a, character b, boolean c, string d, double e) {
    return a;
}

void main() {
    int list[1];
    double x = 0.5;
    int y = f(list[0], 'x', true, "s", x);
}
