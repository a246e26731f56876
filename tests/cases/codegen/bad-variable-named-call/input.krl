void main() {
    int call = 5;
}
