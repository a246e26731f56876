void main() {
if (c = 1) { }
}
