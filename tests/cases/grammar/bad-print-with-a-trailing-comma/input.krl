void main() {
print("a", );
}
