void main() {
for (i = 0, j = 0;;) { }
}
