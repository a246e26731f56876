void main() {
    print(1 < 2, 2 < 1, 1 <= 1, 2 > 1, 1 >= 2, 1 == 1, 1 != 1, -1 < 1, "\n");
    print(true && false, " ", true || false, " ", !true, " ", !false, "\n");
    print(5 && 0, 5 && 7, 0 || 0, 0 || 9, !5, !0, "\n");
}
