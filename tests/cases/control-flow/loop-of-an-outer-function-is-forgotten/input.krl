void f() {
    while (true) {
        break;
    }
}

void main() {
    while (false) {
        continue;
    }
}
