void main() {
exit(a || 1);
exit(a && 1);
exit(a == 1);
exit(a != 1);
exit(a < 1);
exit(a > 1);
exit(a <= 1);
exit(a >= 1);
exit(a + 1);
exit(a - 1);
exit(a * 1);
exit(a / 1);
}
