void main() {
    for (int i = 0; i < 3; i++) {
        print(i);
    }
    print("\n");
}
