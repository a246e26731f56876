int f(int a, int b) {
    return a;
}

int g(int a) {
    return a;
}

void note(int a, int b, int c) {
}

void none() {
}

void main() {
    int x = f(1, g(2));
    note(x + 1, x, f(x * 2, 3));
    none();
    x = g(x) + g(4);
}
