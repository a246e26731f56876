void f() {
    int list[268435454];
    list[0] = 1;
}

void main() {
}
