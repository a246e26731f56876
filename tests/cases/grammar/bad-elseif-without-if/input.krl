void main() {
elseif (c) { }
}
