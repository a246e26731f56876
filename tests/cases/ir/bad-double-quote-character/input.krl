void main() {
    character c = '"';
}
