void main() {
    int goto = 5;
}
