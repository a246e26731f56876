void f(int i) {
    double _t0 = 0.5, _t1 = 0.5, _t2 = 0.5;
    int x = i + 2;
    int y = -i;
    int list[1] = {abs(i)};
}

void main() {
}
