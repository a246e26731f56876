void main() {
    int list[1] = {doubletostring * 2};
}
