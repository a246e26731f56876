void main() {
    int x = 1;
    exit();
    exit(3);
    exit(x + 1);
    x = 2;
}
