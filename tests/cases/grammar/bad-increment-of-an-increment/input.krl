void main() {
++x++;
}
