void main() {
    void list[2];
    list[0] = list[1];
}
