void main() {
while (true) { continue }
}
