void main() {
int f() { }
}
