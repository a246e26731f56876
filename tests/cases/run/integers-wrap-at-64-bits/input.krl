void main() {
    int x = 1;
    for (int i = 0; i < 63; i++) {
        x = x * 2;
    }
    print(x, " ", x - 1, " ", -x, " ", x * 2, "\n");
}
