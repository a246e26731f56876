void main() {
int a[3], n = 0, m = 1;
}
