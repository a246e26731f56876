void main() {
    for (double d = (double) 1; ; ) {
        break;
    }
}
