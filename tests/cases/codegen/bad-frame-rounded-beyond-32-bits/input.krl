void main() {
    int list[268435455];
    list[0] = 1;
}
