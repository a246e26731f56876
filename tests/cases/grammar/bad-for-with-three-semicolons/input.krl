void main() {
for (;;;) { }
}
