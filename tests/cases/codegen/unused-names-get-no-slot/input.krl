void main() {
    int unused[100];
    int x = 1;
}
