void main() {
print(x++);
}
