void main() {
    int list[4];
    double d = 1.5;
    list[d] = 1;
    int x = list[d];
    print(list[d]);
}
