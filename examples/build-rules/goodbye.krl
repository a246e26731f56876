void main() {
    print("Goodbye!\n");
}
