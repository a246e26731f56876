void main() {
while (int c = 1) { }
}
