int
main() {
    x = 1;
    return u;
}

void f() {
    y = 2;
}
