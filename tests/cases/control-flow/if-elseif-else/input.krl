void main() {
    int x = 1;
    if (x == 1) {
        x = 2;
    } elseif (x == 2) {
        x = 3;
    } else {
        x = 4;
    }
}
