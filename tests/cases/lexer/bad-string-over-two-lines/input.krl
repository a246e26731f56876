void main() {
print("ab
cd");
}
