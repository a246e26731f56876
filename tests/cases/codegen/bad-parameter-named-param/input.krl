void f(int param) {
}

void main() {
}
