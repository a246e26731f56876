void main() {
    int x = 1;
    (x = 2);
    (x += 3);
}
