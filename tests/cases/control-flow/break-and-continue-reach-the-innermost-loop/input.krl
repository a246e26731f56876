void main() {
    while (true) {
        for (; ; ) {
            continue;
            break;
        }
        continue;
        break;
    }
}
