void main() {
    int chartoint = 5;
}
