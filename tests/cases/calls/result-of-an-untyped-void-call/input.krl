void g() {
}

void main() {
    int list[1] = {g()};
}
