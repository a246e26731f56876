void main() {
    int x = 1;
    for (x; ; ) {
    }
}
