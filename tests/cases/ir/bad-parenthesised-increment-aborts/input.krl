void main() {
    int x = 1;
    (x)++;
}
