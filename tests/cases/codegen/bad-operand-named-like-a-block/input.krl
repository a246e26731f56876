void main() {
    if (B7 > 0) {
    }
}
