int number() {
    return 1;
}

void f(int i, character c) {
    double _t0 = 0.5, _t1 = 0.5, _t2 = 0.5, _t3 = 0.5, _t4 = 0.5;
    int x = i < 2;
    boolean b = !true;
    character d = (character) i;
    int y = (int) c;
    int z = number();
}

void main() {
}
