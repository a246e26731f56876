void main() {
1;
}
