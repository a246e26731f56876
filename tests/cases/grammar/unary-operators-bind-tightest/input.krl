void main() {
exit(-a * b);
exit(!a && b);
exit(!a < b);
exit(+a - b);
exit(a - -b);
exit(a * -b);
exit(-a[0] + b);
exit(!(a && b));
}
