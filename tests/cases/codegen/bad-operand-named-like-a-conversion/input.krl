void main() {
    int list[1] = {inttochar + 1};
}
