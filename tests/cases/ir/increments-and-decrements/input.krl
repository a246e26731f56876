void main() {
    int x = 1;
    int list[2];
    x++;
    ++x;
    x--;
    --x;
    list[0]++;
    --list[x];
    (x++);
    (--x);
}
