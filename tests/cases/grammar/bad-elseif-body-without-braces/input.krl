void main() {
if (c) { } elseif (c) x = 1;
}
