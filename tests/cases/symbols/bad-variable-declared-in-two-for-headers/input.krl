void main() {
for (int i = 0; i < 1; i++) { }
for (int i = 0; i < 1; i++) { }
}
