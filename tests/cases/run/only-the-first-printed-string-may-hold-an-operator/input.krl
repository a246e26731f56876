void main() {
    int sum = 3;
    print("1 + 2 = ", sum, "\n");
}
