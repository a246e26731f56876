void main() {
for ((i = 0);;) { }
}
