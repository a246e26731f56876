void main() {
int a[3] = {};
}
