void main() {
}
