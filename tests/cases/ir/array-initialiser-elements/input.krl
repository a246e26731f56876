int f() {
    return 1;
}

void main() {
    int x = 2;
    int list[6] = {x, x + 1, list[x], f(), -3, (x)};
}
