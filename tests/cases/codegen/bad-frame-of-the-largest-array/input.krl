void main() {
    int list[2147483647];
    list[0] = 1;
}
