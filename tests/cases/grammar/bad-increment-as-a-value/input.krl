void main() {
x = y++;
}
