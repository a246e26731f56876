void f(int x) {
    x += 1.5;
    int y = x;
}

void main() {
}
