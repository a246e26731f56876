void main() {
    int i = 0;
    for (; ; ) {
        i++;
        if (i == 3) {
            break;
        }
    }
    print(i, "\n");
}
