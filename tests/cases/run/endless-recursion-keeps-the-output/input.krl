int down(int n) {
    int list[1000];
    list[0] = down(n + 1);
    return list[0];
}

void main() {
    print("before");
    print(down(0));
}
