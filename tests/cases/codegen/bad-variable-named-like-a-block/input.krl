void main() {
    int B7 = 1;
}
