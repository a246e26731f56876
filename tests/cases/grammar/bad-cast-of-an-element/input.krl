void main() {
int x = (int) a[0];
}
