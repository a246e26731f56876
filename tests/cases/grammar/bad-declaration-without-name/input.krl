void main() {
int = 1;
}
