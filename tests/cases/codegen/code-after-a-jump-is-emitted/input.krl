void main() {
    return;
    int x = 1;
}
