void main() {
    int x = 1;
    x = x + 2;
    x = x - 2;
    x = x * 2;
    x = x / 2;
    x = x < 2;
    x = x > 2;
    x = x <= 2;
    x = x >= 2;
    x = x == 2;
    x = x != 2;
    x = x && 2;
    x = x || 2;
}
