void main() {
f()++;
}
