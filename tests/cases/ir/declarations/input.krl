void main() {
    int a = 1, b = a, c = a + b;
    int list[2];
    string words[3] = {"x", "y"};
}
