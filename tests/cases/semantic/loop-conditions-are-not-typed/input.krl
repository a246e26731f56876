void main() {
    while (nothing == "s") {
    }
    for (; 'c'; ) {
    }
}
