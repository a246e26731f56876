void main() {
    if ('"' == '"') {
        print("equal\n");
    }
}
