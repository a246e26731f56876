void main() {
if (c) { } elseif c { }
}
