void main() {
int a[2][3];
}
