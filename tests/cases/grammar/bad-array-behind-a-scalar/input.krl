void main() {
int n = 0, a[3];
}
