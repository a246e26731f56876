void main() {
    for (int i = 0, j = 9; i < j; i++) {
        j--;
    }
    print(i, j, "\n");
}
