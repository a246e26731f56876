void main() {
    boolean go = true;
    while (go) {
        go = false;
    }
    for (; 'c'; ) {
        exit();
    }
}
