void main() {
for (print(1);;) { }
}
