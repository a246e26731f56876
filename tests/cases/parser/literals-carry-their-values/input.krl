void main() {
exit(12);
exit(0.25);
exit("s");
exit('c');
exit(true);
exit(false);
exit(a[0]);
exit(a[i]);
}
