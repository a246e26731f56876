void main() {
if (c) { } else { } elseif (c) { }
}
