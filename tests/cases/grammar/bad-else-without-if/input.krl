void main() {
else { }
}
