void main() {
// no comment
}
