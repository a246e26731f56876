void main() {
    int param = 5;
}
