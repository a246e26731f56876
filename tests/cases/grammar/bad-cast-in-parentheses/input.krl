void main() {
int x = ((int) y);
}
