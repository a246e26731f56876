void main() {
for (int i;;) { }
}
