void main() {
if x
}
