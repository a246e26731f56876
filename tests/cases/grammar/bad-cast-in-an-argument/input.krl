void main() {
f((int) y);
}
