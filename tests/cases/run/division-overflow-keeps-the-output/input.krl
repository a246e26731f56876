void main() {
    int smallest = 1;
    for (int i = 0; i < 63; i++) {
        smallest = smallest * 2;
    }
    int minus = -1;
    print("before");
    print(smallest / minus);
}
