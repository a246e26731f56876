void f(double goto) {
}

void main() {
}
