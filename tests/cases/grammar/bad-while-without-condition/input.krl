void main() {
while () { }
}
