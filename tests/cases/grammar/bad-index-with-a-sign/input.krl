void main() {
x = a[-1];
}
