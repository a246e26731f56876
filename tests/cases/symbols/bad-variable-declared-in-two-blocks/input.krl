void main() {
if (true) {
int x = 1;
} else {
int x = 2;
}
}
