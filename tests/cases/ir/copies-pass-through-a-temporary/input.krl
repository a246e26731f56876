void main() {
    int x = 5;
    int y = 6;
    int list[3];
    y = x;
    y = list[x];
    list[0] = x;
    list[y] = list[1];
    x = x;
    y = (x);
}
