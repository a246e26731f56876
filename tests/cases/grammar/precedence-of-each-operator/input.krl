void main() {
exit(a || b != c);
exit(a != b > c);
exit(a != b <= c);
exit(a != b >= c);
exit(a > b - c);
exit(a - b / c);
}
