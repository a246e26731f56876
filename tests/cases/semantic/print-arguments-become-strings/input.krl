void main() {
    print(1, "s", true, 2.5,
        'c');
}
