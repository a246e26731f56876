void f() {
    while (true) {
    }
}

void main() {
    while (true) {
    }
}
