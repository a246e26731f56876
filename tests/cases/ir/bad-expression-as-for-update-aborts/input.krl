void main() {
    for (; ; 1 + 2) {
    }
}
