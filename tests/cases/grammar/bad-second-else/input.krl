void main() {
if (c) { } else { } else { }
}
