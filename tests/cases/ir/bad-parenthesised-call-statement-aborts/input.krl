void f() {
}

void main() {
    (f());
}
