void main() {
    print("hi\n");
}
