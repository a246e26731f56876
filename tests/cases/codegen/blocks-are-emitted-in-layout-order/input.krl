void f(int x) {
    if (x == 1) {
        x = 2;
    } else {
        x = 3;
    }
}

void main() {
}
