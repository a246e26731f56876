void main() {
    int a = 1;
    if (a + 1 < a * 2) {
    }
}
