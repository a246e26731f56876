void main() {
int a[3], b[3];
}
