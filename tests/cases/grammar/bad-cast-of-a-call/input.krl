void main() {
int x = (int) f();
}
