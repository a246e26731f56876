void main() {
for (;; int i = 0) { }
}
