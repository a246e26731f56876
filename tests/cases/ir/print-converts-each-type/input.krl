void main() {
    double d = 2.5;
    boolean list[1];
    print(7, d, list[0], 'c');
}
