void main() {
x = a['a'];
}
