void main() {
while (c) x = 1;
}
