void main() {
    character d = 'a';
    d = '\n';
    d = '_';
    d = '5';
}
