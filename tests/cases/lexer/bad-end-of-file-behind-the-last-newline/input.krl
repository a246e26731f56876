void main() {
