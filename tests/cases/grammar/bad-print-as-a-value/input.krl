void main() {
x = print(1);
}
