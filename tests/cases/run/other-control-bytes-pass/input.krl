void main() {
    print("\b\f|", "\q\x");
}
