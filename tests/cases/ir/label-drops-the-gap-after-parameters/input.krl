void f(int a) {
    while (a > 0) {
        a--;
    }
}

void g(int a) {
    for (a = 1; ; ) {
    }
}

void main() {
}
