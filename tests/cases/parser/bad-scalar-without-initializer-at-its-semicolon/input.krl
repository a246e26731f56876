void main() {
int x

;
}
