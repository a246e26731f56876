void main() {
    int x = 1;
    x[0] = 2;
}
