void f(int i) {
    int x = i + 2;
    double _t0 = 0.5;
}

void main() {
}
