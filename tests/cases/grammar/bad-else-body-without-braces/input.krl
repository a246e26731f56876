void main() {
if (c) { } else x = 1;
}
