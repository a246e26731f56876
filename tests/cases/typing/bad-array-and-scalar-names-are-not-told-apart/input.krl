void main() {
    int list[2];
    int x = list;
    int y = x[0];
}
