void main() {
    int x = 1;
    int list[2];
    x += 2;
    x -= x;
    list[0] += list[x];
    list[x] -= x * 2;
    x += (3);
}
