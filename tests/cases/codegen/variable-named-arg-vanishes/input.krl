void main() {
    int arg = 5;
}
