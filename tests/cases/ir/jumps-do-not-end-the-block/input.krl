void main() {
    int x = 1;
    while (true) {
        break;
        x = 2;
        continue;
        x = 3;
    }
    exit();
    x = 4;
    return;
    x = 5;
}
