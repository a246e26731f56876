void main() {
    print("Hello!\n");
}
