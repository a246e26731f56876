void main() {
int x = (int) -1;
}
