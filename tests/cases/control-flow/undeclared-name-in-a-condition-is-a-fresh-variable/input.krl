void main() {
    int x = 0;
    while (fresh != fresh) {
        x++;
    }
    if (fresh == fresh) {
        x += 5;
    }
    print(x, "\n");
}
