void main() {
int x = (int) "s";
}
