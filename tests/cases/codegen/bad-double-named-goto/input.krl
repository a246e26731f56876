void main() {
    double goto = 1.5;
}
