void main() {
int a[3] = {1, };
}
