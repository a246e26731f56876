void main() {
int n = 2 + 3;
int a[n];
}
