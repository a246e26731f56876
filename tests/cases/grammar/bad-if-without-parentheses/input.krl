void main() {
if x;
}
