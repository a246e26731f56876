void main() {
-x;
}
