void main() {
++1;
}
