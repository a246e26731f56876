void main() {
    int arg = 5;
    print("x");
}
