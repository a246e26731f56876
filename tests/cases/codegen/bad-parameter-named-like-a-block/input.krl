void f(int B10) {
}

void main() {
}
