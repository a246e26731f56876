void main() {
return }
