void main() {
int x = (int) y + 1;
}
