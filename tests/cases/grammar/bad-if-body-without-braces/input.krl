void main() {
if (c) x = 1;
}
