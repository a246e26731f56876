void main() {
    int call[2];
    call[0] = 1;
}
