void main() {
    int list[n];
    int n = 3;
}
