void main() {
x = ;
}
