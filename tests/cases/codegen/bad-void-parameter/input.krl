void f(void x) {
}

void main() {
}
