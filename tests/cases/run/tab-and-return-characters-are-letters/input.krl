void main() {
    print('\t', '\r', "\t", '\\', '\'', '\n');
}
