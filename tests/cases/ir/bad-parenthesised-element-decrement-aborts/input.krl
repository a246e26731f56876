void main() {
    int list[2];
    --(list[1]);
}
