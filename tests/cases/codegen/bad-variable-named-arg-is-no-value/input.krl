void main() {
    int list[1] = {arg};
}
