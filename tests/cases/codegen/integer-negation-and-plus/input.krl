void main() {
    int x = -5;
    x = +x;
    x = - -x;
}
