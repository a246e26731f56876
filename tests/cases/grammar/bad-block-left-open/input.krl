void main() {
if (true) {
}
