void main() {
    int zero = 0;
    print("before");
    print(1 / zero);
    print("after");
}
