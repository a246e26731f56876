void main() {
for (i = 0; i < 3) { }
}
