void main() {
int x = 1 + (int) y;
}
