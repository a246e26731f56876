void main() {
    print("\\n \\t \\r \\\" \\\\");
}
