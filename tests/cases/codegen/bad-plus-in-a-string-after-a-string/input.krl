void main() {
    print("a", " + ");
}
