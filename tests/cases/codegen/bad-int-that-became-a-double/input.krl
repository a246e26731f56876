void main() {
    int x = 1;
    x += 1.5;
    x = x + 1;
}
