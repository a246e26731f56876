void f(boolean a, int b) {
    boolean x = a && true;
    int y = b || 2;
    x = !a;
    y = !b;
}

void main() {
}
