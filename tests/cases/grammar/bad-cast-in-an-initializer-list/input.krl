void main() {
int a[1] = {(int) y};
}
