void main() {
1 = x;
}
