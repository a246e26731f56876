void main() {
int a[2];
int b[2];
int
a[3];
}
