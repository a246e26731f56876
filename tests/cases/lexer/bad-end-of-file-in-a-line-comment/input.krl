void main() {
# c