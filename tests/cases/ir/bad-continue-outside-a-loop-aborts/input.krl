void f() {
    if (true) {
        continue;
    }
}

void main() {
}
