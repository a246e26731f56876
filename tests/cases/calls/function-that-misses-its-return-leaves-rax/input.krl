int f(int x) {
    x = x + 1;
}

void main() {
}
