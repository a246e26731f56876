void main() {
    int x = 2147483647;
    print(0, " ", -1, " ", x, " ", x + 1, " ", -x - 2, " ", x * x, "\n");
}
