void main() {
    int x = one +
        two[0] * three();
}
