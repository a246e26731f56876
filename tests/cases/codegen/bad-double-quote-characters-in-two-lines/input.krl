void main() {
    character c = '"';
    print("text");
}
