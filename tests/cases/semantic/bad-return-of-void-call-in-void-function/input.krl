void g() {
}

void f() {
    return g();
}
