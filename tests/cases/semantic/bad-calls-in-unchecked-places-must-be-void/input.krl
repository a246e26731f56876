int f() {
    return 1;
}

void main() {
    int x = 0;
    if (f() == 0) {
    } elseif (f() == 1) {
    }
    while (f() > 1) {
    }
    for (; f() < 0; ) {
    }
    x += f();
    exit(f());
    (f());
    for (f(); true; f()) {
    }
    if (g(nothing)) {
    }
    while (f(1)) {
    }
}
