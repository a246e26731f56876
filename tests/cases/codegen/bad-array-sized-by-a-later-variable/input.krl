void main() {
    int list[n];
    int n = 3;
    list[0] = 1;
}
