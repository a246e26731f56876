void main() {
    int x = 1;
    int x = 2.5;
    nothing = 1;
}
