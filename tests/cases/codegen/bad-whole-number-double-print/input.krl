void main() {
    print(2.0);
}
