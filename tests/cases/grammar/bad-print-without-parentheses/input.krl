void main() {
print x;
}
