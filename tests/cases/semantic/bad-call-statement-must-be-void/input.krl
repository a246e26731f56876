int f(int x) {
    return x;
}

void main() {
    f(1);
    f(1.5);
    g();
    f
        (2);
}
