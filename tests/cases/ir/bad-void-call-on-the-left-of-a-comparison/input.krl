void g() {
}

void main() {
    while (g() == 0) {
    }
}
