void main() {
int x = 1;
}
