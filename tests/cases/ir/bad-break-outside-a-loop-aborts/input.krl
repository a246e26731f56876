void main() {
    while (true) {
    }
    break;
}
