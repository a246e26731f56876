void main() {
int n = -3;
int a[n];
}
