void main() {
if ((int) y) { }
}
