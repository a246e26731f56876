void main() {
if (c);
}
