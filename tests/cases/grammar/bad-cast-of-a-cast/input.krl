void main() {
int x = (int) (int) y;
}
