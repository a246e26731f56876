void main() {
    int x = 3;
    while (x > 0) {
        x--;
    }
    print("done\n");
}
