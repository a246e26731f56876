void f() {
    int x = 1 + 2;
    if (x == 3) {
    }
}

void main() {
    int x = 3 + 4;
    if (x == 7) {
    }
}
