void g() {
}

void main() {
    if (g()) {
    }
}
