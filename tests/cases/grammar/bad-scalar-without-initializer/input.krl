void main() {
int x;
}
