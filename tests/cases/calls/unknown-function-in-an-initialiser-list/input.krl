void main() {
    int list[1] = {abs(-7)};
    print(list[0], "\n");
}
