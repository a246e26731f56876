void main() {
    int list[1];
    int index = -1000000000;
    print("before");
    list[index] = 1;
    print("after");
}
