void main() {
if () { }
}
