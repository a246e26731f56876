void main() {
int n = 0;
int a[n];
}
