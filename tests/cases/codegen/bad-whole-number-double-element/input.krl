void main() {
    double list[1];
    list[0] = 1.0;
}
