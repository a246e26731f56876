void main() {
    int x = 1;
    if (x == 1) {
        x = 2;
    } else {
        x = 3;
    }
    x = 4;
}
