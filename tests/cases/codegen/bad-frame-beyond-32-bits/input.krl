void main() {
    int list[268435456];
    list[0] = 1;
}
