int first(int x) {
    return x;
}

void main() {
    int list[2] = {3, 4};
    print(first(list[1]), first(list), "\n");
}
