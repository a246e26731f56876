int f(int n) {
    return n;
}

int none() {
    return 1;
}

void main() {
    int x = f(1, 2);
    x = f();
    x = none(x, x, x);
    x = f(nothing, other);
    x = f(1.5, f(2.5));
    x =
        f();
}
