void main() {
x = 1;;
}
