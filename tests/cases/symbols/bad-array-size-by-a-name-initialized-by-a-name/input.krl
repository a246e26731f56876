void main() {
int m = 3; int n = m;
int a[n];
}
