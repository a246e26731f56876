void main() {
    print("a");
    print("");
    print("b");
}
