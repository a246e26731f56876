void main() {
while x;
}
