void g() {
}

void main() {
    for (; 0 == g(); ) {
    }
}
