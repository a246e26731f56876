void main() {
print("ab\
");
}
