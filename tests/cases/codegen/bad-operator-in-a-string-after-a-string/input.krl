void main() {
    print("a", " - ");
}
