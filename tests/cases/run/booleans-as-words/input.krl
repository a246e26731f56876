void main() {
    boolean list[2] = {true, false};
    print(list[0], " ", list[1], " ", !list[0], "\n");
}
