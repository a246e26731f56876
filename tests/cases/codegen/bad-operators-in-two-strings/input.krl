void main() {
    print("a - b", "c * d");
}
