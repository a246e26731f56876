void main() {
    for (int i = 0; i < 3000; i++) {
        print("line ", i, "\n");
    }
    exit();
}
