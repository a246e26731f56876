void main() {
    print(1, " + ", 2);
}
