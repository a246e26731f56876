int f(int x) {
    double d = 0.5;
    int list[2] = {d, 3};
    d = 2.5;
    x = 3;
    return x;
}

void main() {
}
