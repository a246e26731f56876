void main() {
    int n = 1;
    character c = 'n';
    print(n, c, n, "\n");
}
