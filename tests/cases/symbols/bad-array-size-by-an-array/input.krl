void main() {
int n[2];
int a[n];
}
