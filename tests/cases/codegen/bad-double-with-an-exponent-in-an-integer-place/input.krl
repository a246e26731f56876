void main() {
    int list[1] = {0.00001};
}
