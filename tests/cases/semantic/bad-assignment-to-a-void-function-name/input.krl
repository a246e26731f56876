void f() {
    f = 1;
}
