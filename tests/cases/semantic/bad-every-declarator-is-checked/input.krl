void main() {
    int a = 1.5,
        b = 2,
        c
            = true;
}
