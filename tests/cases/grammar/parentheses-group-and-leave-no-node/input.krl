void main() {
exit((a + b) * c);
exit(a - (b - c));
exit(((a)));
exit((((a)) == (b < c)));
}
