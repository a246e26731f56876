void main() {
    int list[3] = {4, 5, 6};
    int sum = 0;
    for (int i = 0; i < 3; i++) {
        sum = sum * 10 + list[i];
    }
    int index = 2;
    list[index] += 1;
    list[0]--;
    print(sum, " ", list[0], list[1], list[index], "\n");
}
