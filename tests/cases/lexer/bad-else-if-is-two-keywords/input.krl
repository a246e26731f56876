void main() {
if (true) { }
else if (true) { }
}
