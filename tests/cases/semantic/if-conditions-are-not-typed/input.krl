void main() {
    int x = 1;
    if (x < 2.5) {
    } elseif (nothing) {
    }
}
